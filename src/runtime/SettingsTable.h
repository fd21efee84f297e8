#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kartix {

/// What a setting holds. An empty value is none, whatever the type.
enum class SettingType {
  text,
  password,
  path,       ///< of a file or directory of this machine
  service,    ///< path of a service at the gateway, or its whole address
  address,    ///< "host:port"
  number,     ///< within `allowed`, "1..65535"
  ports,      ///< one or more within `allowed`, separated by commas
  onOff,      ///< "1" is on, anything else is off
  selection,  ///< one of `allowed`, "ZEVIS|ZKR|KBA"; any other counts as none
  mode        ///< one of `allowed`, "disable|require"; any other stays what it is, and what needs it fails
};

/// The operations that a setting is needed by; a sum of these.
namespace needed_by {
inline constexpr unsigned none = 0;
inline constexpr unsigned inquiry = 1;
inline constexpr unsigned order = 2;
inline constexpr unsigned cancellation = 4;
inline constexpr unsigned notification = 8;
inline constexpr unsigned all = 15;
}  // namespace needed_by

/// Everything that is known of a setting. Whoever reads settings, shows them, checks or describes them takes it from
/// here; tests compare the table with what is read and with docs/settings.md.
struct SettingEntry {
  std::string_view section;  ///< empty for those that stand in none
  std::string_view name;
  SettingType type = SettingType::text;
  std::string_view fallback;  ///< what counts when it is found nowhere
  std::string_view allowed;   ///< of a number, of ports, a selection or a mode
  bool storeOnly = false;     ///< not looked for in the ini file
  unsigned neededBy = needed_by::none;
  std::string_view meaning;  ///< a sentence in German

  bool secret() const { return type == SettingType::password; }
  /// What an administrator calls it: "FS.ServerIP", "InfoDatei".
  std::string path() const;
  /// Registry key that it stands in, ends in "\".
  std::string key() const;
};

/// Every setting that the component reads, in the order of their sections.
std::span<const SettingEntry> settingsTable();

/// Names of the operations in `neededBy`, separated by ", ".
std::string operationNames(unsigned neededBy);

/// True for one of `allowed` of a selection.
bool isAmong(const SettingEntry& selection, std::string_view value);

/// What a value must be, when it is none of the setting's type ("muss eine Zahl von 1 bis 65535 sein"); else empty.
std::string misfit(const SettingEntry& setting, std::string_view value);

/// What a switch or a selection counts as, also with a value that does not fit; any other value is what it is.
std::string countsAs(const SettingEntry& setting, std::string_view value);

/// The entry; `std::logic_error` when there is none.
const SettingEntry& settingEntry(std::string_view section, std::string_view name);

}  // namespace kartix
