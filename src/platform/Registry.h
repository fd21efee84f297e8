#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::platform {

/// One value of the settings store, with the type it was stored under.
struct RegistryValue {
  enum class Type { string, expandString, dword, other };

  Type type = Type::other;
  std::string text;          ///< UTF-8, for `string` and `expandString`; may hold NUL characters
  std::uint32_t number = 0;  ///< for `dword`
};

/// A string value (UTF-8) that is to be stored, and where.
struct RegistryEntry {
  std::string key;
  std::string name;
  std::string text;
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

  /// Stores all of `entries` as `RegSetValueEx` does. False when that has failed: a store that is written in one step
  /// then still holds its former content, any other may hold some of them.
  virtual bool RegSetValues(const std::vector<RegistryEntry>& entries) {
    for (const auto& [key, name, text] : entries) {
      if (!RegCreateKeyEx(key) || !RegSetValueEx(key, name, text)) return false;
    }
    return true;
  }

  /// Takes the value `name` away, if it is there. A store that cannot do that leaves an empty one, which counts as
  /// none. False when the store cannot be written.
  virtual bool RegDeleteValue(std::string_view key, std::string_view name) { return RegSetValueEx(key, name, ""); }

  /// Why something that was asked for could not be read, in the system's words; empty when all could, or where that
  /// is not known.
  virtual std::string readFailure() const { return {}; }

  /// While the result is kept, and nothing is written meanwhile, all that is read is of one moment, where the store
  /// can do that; it need not look anew for each value then.
  virtual std::shared_ptr<void> hold() { return nullptr; }

  /// Why the last write came to nothing, in the system's words; empty where that is not known.
  virtual std::string writeFailure() const { return {}; }
};

}  // namespace kartix::platform
