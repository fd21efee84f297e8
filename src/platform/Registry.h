#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kartix::platform {

/// One value of the settings store, with the type it was stored under.
struct RegistryValue {
  enum class Type { string, expandString, dword, other };

  Type type = Type::other;
  std::string text;          ///< UTF-8, for `string` and `expandString`; may hold NUL characters
  std::uint32_t number = 0;  ///< for `dword`
};

/// The settings store of the current user. Key paths are separated by "\", are told apart without regard to
/// case and may end in "\"; value names are told apart without regard to case too.
class Registry {
 public:
  virtual ~Registry() = default;

  /// The value `name` of key `key`, or nothing when key or value is missing or the store cannot be read.
  virtual std::optional<RegistryValue> RegQueryValueEx(std::string_view key, std::string_view name) = 0;

  /// Creates `key` with every missing parent. False when the store cannot be written.
  virtual bool RegCreateKeyEx(std::string_view key) = 0;

  /// Stores `text` (UTF-8) as a string value below the existing or new key `key`. False when it was not written;
  /// the store then still holds its former content.
  virtual bool RegSetValueEx(std::string_view key, std::string_view name, std::string_view text) = 0;

  /// Takes the value `name` away, if it is there. A store that cannot do that leaves an empty one, which counts as
  /// none. False when the store cannot be written.
  virtual bool RegDeleteValue(std::string_view key, std::string_view name) { return RegSetValueEx(key, name, ""); }

  /// Why the last write came to nothing, in the system's words; empty where that is not known.
  virtual std::string writeFailure() const { return {}; }
};

}  // namespace kartix::platform
