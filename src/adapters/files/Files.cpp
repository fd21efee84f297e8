#include "adapters/files/Files.h"

#include <filesystem>
#include <memory>
#include <system_error>

#include "adapters/files/Lines.h"
#include "adapters/files/Names.h"
#include "common/Paths.h"

namespace kartix::adapters {
namespace {

namespace fs = std::filesystem;

class Files final : public platform::FileSystem {
 public:
  std::string nativePath(std::string_view path) override { return nativeName(path); }

  std::optional<std::string> findFile(std::string_view path) override {
    // The system would take what stands before a NUL for the name.
    if (path.find('\0') != std::string_view::npos) return std::nullopt;
    std::string native = nativePath(path);
    std::error_code error;
    const fs::path file = pathOf(native);
    const fs::file_status status = fs::status(file, error);
    if (fs::is_regular_file(status)) return native;
    if (fs::exists(status)) return std::nullopt;
    return findOtherCase(file);
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
