#include "component/HostSettings.h"

#include <algorithm>
#include <exception>

#include "common/Scrambling.h"
#include "common/Text.h"
#include "runtime/Konfiguration.h"
#include "runtime/SettingsTable.h"

namespace kartix {
namespace {

bool isSecret(std::string_view name) {
  const auto table = settingsTable();
  return std::any_of(table.begin(), table.end(), [&](const SettingEntry& each) {
    return each.secret() && text::equalNoCase(each.name, name);
  });
}

/// What an administrator calls the value: its section, when it stands in one, and its name.
std::string settingName(std::string_view key, std::string_view name) {
  std::string_view section = key.starts_with(productKey) ? key.substr(productKey.size()) : std::string_view();
  while (section.ends_with('\\')) section.remove_suffix(1);
  return section.empty() ? std::string(name) : std::string(section).append(".").append(name);
}

}  // namespace

std::optional<platform::RegistryValue> HostSettings::RegQueryValueEx(std::string_view key, std::string_view name) {
  std::optional<std::string> value;
  try {
    value = read_(settingName(key, name));
  } catch (...) {
    // The host's code may throw what it likes: it has no value.
  }
  if (!value) return std::nullopt;
  if (isSecret(name)) value = CryptLong(*value);
  return platform::RegistryValue{platform::RegistryValue::Type::string, *value};
}

bool HostSettings::RegCreateKeyEx(std::string_view /*key*/) { return static_cast<bool>(write_); }

bool HostSettings::RegSetValueEx(std::string_view key, std::string_view name, std::string_view text) {
  try {
    return write_ && write_(settingName(key, name), isSecret(name) ? DecryptLong(text) : std::string(text));
  } catch (...) {
    return false;
  }
}

}  // namespace kartix
