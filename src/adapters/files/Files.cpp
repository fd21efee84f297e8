#include "adapters/files/Files.h"

#include <filesystem>
#include <system_error>

#include "adapters/files/Lines.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

namespace fs = std::filesystem;

/// One pass over the folder of `wanted`; only entries whose names fit are looked at closer.
std::optional<std::string> findOtherCase(const fs::path& wanted) {
  const std::string stem = wanted.stem().string();
  const std::string extension = wanted.extension().string();
  if (extension.empty()) return std::nullopt;
  const fs::path folder = wanted.has_parent_path() ? wanted.parent_path() : fs::path(".");
  std::string best;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::string name = entry->path().filename().string();
    if (name.size() != stem.size() + extension.size() || !name.starts_with(stem)) continue;
    if (!text::equalNoCase(std::string_view(name).substr(stem.size()), extension)) continue;
    if (!best.empty() && best < name) continue;
    std::error_code unreadable;
    if (entry->is_regular_file(unreadable)) best = std::move(name);
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
