#include "adapters/files/Files.h"

#include <dirent.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

#include "adapters/files/Lines.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

namespace fs = std::filesystem;

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

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

class Files final : public platform::FileSystem {
 public:
  std::string nativePath(std::string_view path) override { return text::replaceAll(path, "\\", "/"); }

  std::optional<std::string> findFile(std::string_view path) override {
    // The system would take what stands before a NUL for the name.
    if (path.find('\0') != std::string_view::npos) return std::nullopt;
    std::string native = nativePath(path);
    std::error_code error;
    const fs::file_status status = fs::status(native, error);
    if (fs::is_regular_file(status)) return native;
    if (fs::exists(status)) return std::nullopt;
    return findOtherCase(native);
  }

  std::error_code appendLine(const std::string& path, std::string_view line) noexcept override {
    return appendDurably(path, line);
  }

  std::error_code readLines(const std::string& path, const std::function<void(std::string_view)>& take) override {
    return readWholeLines(path, longestLine, take);
  }
};

}  // namespace

std::unique_ptr<platform::FileSystem> makeFiles() { return std::make_unique<Files>(); }

}  // namespace kartix::adapters
