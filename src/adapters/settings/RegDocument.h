#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "adapters/settings/RegEncoding.h"
#include "adapters/settings/TextLines.h"
#include "common/Text.h"
#include "platform/Registry.h"

namespace kartix::adapters {

/// The content of a registry file: its lines, and where in them each value of the current user stands. Lines that are
/// not understood are kept and mean nothing. Of several lines for one value the last one counts.
class RegDocument {
 public:
  /// An empty store in the encoding that the registry editor writes.
  RegDocument();
  /// Nothing when `bytes` are not a registry file.
  static std::optional<RegDocument> parse(std::string_view bytes);

  /// A value of the key `key`, which is given below the current user's root.
  std::optional<platform::RegistryValue> value(std::string_view key, std::string_view name) const;
  bool hasKey(std::string_view key) const;

  /// Both give False, and change nothing, for names that a registry file cannot hold. The positions of the values are
  /// stale afterwards: encode the document and parse it anew to read from it.
  bool createKey(std::string_view key);
  bool setString(std::string_view key, std::string_view name, std::string_view text);
  /// The line of the value says from now on that it is none.
  void remove(std::string_view key, std::string_view name);

  /// The bytes of the file.
  std::string encode() const;

 private:
  struct Value {
    std::size_t line = 0;
    std::size_t count = 1;
    std::optional<platform::RegistryValue> value;  ///< nothing: the line deletes the value
  };
  struct Key {
    std::size_t end = 0;  ///< where the next value of the key is to be inserted
    std::map<std::string, Value, text::LessNoCase> values;
  };

  RegDocument(std::string_view text, RegEncoding encoding) : encoding_(encoding), lines_(text) {}
  bool index();
  std::optional<std::pair<std::string, Value>> readValue(std::size_t line) const;
  std::optional<platform::RegistryValue> readData(std::string_view data, Value& where) const;
  std::optional<platform::RegistryValue> readText(std::string_view data, Value& where) const;
  std::optional<platform::RegistryValue> readHex(std::string_view data, Value& where) const;
  bool holdsName(std::string_view text) const;
  std::string valueLine(std::string_view name, std::string_view text) const;

  RegEncoding encoding_ = RegEncoding::utf16;
  TextLines lines_;
  std::map<std::string, Key, text::LessNoCase> keys_;  ///< by path below the current user's root
};

}  // namespace kartix::adapters
