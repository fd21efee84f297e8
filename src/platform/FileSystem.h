#pragma once

#include <optional>
#include <string>
#include <string_view>

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
};

}  // namespace kartix::platform
