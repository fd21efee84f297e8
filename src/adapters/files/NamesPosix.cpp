#include <dirent.h>

#include <cerrno>
#include <memory>
#include <new>

#include "adapters/files/Names.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

namespace fs = std::filesystem;

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

}  // namespace

std::string nativeName(std::string_view path) { return text::replaceAll(path, "\\", "/"); }

/// One pass over the folder of `wanted`; only entries whose names fit are looked at closer. Not by the standard
/// library, whose steps through a folder end the process when memory runs out.
std::optional<std::string> findOtherCase(const fs::path& wanted) {
  const std::string stem = wanted.stem().string();
  const std::string extension = wanted.extension().string();
  if (extension.empty()) return std::nullopt;
  const fs::path folder = wanted.has_parent_path() ? wanted.parent_path() : fs::path(".");
  const std::unique_ptr<DIR, CloseFolder> entries(::opendir(folder.c_str()));
  if (!entries && errno == ENOMEM) throw std::bad_alloc();
  if (!entries) return std::nullopt;
  std::string best;
  while (const dirent* const entry = ::readdir(entries.get())) {
    const std::string_view name = &entry->d_name[0];
    if (name.size() != stem.size() + extension.size() || !name.starts_with(stem)) continue;
    if (!text::equalNoCase(name.substr(stem.size()), extension)) continue;
    if (!best.empty() && best < name) continue;
    std::error_code unreadable;
    if (fs::is_regular_file(folder / name, unreadable)) best = name;
  }
  if (best.empty()) return std::nullopt;
  return (wanted.parent_path() / best).string();
}

}  // namespace kartix::adapters
