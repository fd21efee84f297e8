#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::platform {
class Registry;
}

namespace kartix::host {

/// One setting of an installation.
struct Setting {
  std::string key;   ///< registry key, ends in "\"
  std::string name;  ///< value name
  std::string path;  ///< what an administrator calls it: "FS.ServerIP", "InfoDatei"
  bool secret = false;
};

/// Every setting that the component reads, in the order of their sections.
const std::vector<Setting>& allSettings();

/// The setting called `path`, without regard to case; the section may be left out where only one has such a name.
/// Raises `UsageError`.
const Setting& findSetting(std::string_view path);

/// The stored text (a number in decimal), scrambled when the setting is secret; nothing when it is not in the store.
std::optional<std::string> storedValue(platform::Registry& registry, const Setting& setting);

/// Raises `UsageError` for a value that the component could not read.
void checkValue(const Setting& setting, const std::string& value);

/// Stores `value` as it stands, once it is checked. Raises `CommandFailure` when the store cannot be written.
void storeValue(platform::Registry& registry, const Setting& setting, const std::string& value);

}  // namespace kartix::host
