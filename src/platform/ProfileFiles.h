#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kartix::platform {

/// Ini files as the profile calls of the original platform treat them: single-byte text, names told apart
/// without regard to case, first match wins, blanks round names and values dropped, one pair of quotes round a
/// value dropped.
class ProfileFiles {
 public:
  virtual ~ProfileFiles() = default;

  /// Value of `key` in `[section]` of `file` as UTF-8, cut to `size` - 1 characters; `fallback` when file,
  /// section or key is missing or the file cannot be read.
  virtual std::string GetPrivateProfileString(std::string_view section, std::string_view key,
                                              std::string_view fallback, std::size_t size, std::string_view file) = 0;

  /// The same as `Registry::hold`, for `file`.
  virtual std::shared_ptr<void> hold(std::string_view /*file*/) { return nullptr; }

  /// Sets `key` in `[section]` of `file`, creating what is missing. The rest of the file (comments, order, line
  /// ends) stays as it is. False when nothing was written; the file then still holds its former content.
  virtual bool WritePrivateProfileString(std::string_view section, std::string_view key, std::string_view value,
                                         std::string_view file) = 0;

  /// What reading gives after `value` was written, however long it is; nothing when it cannot be written.
  virtual std::optional<std::string> asReadBack(std::string_view value) = 0;
};

}  // namespace kartix::platform
