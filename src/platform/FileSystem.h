#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace kartix::platform {

/// Files whose paths come from settings that were written for the original platform.
class FileSystem {
 public:
  virtual ~FileSystem() = default;

  /// `path` (UTF-8, folders separated by "\" or "/") in the form that this machine takes.
  virtual std::string nativePath(std::string_view path) = 0;

  /// Native path of the file that `path` names; a file is found whatever the case of its extension. The exact name
  /// comes first. Nothing when there is no such file, or it is not a regular one.
  virtual std::optional<std::string> findFile(std::string_view path) = 0;

  /// Appends `line` and a line feed to the file at the absolute native `path`, which is made for its owner alone when
  /// it is missing. Without error both are on the disk when it returns. Lines of several processes do not mix, and a
  /// line that a crash has broken off stays one of its own. Takes no memory.
  virtual std::error_code appendLine(const std::string& path, std::string_view line) noexcept = 0;

  /// Hands every whole line of the file at the absolute native `path` to `take`, without its line feed; one of more
  /// than `longestLine` bytes is left out. A missing file has no lines.
  virtual std::error_code readLines(const std::string& path, const std::function<void(std::string_view)>& take) = 0;
  static constexpr std::size_t longestLine = 4096;
};

}  // namespace kartix::platform
