#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/SettingsTable.h"

namespace kartix::platform {
class ProfileFiles;
class Registry;
}  // namespace kartix::platform

namespace kartix::host {

using Setting = SettingEntry;

/// The setting called `path`, without regard to case; the section may be left out where only one has such a name.
/// Raises `UsageError`.
const Setting& findSetting(std::string_view path);

/// The stored text (a number in decimal), scrambled when the setting is secret; nothing when it is not in the store.
std::optional<std::string> storedValue(platform::Registry& registry, const Setting& setting);

/// A value that counts, and where it comes from. A secret one is scrambled.
struct ValueInForce {
  enum class Source { store, iniFile, fallback };

  std::string value;
  Source source = Source::fallback;
};

/// As the component finds it: in the store, else in the ini file that the store names, else the default.
ValueInForce valueInForce(platform::Registry& registry, platform::ProfileFiles& files, const Setting& setting);

/// "store", "ini file" or "default".
std::string_view sourceName(ValueInForce::Source source);
/// The same for administrators.
std::string_view sourceInGerman(ValueInForce::Source source);

/// Raises `UsageError` for a value that the component could not read.
void checkValue(const Setting& setting, const std::string& value);

/// Raises `UsageError` for a value that is none of the setting's type.
void checkType(const Setting& setting, const std::string& value);

/// Stores `value` as it stands, once it is checked. Raises `CommandFailure`, with the system's reason, when the store
/// cannot be written.
void storeValue(platform::Registry& registry, const Setting& setting, const std::string& value);

/// `storeValue` for several at once: all of them or, in a store that is a file, none.
using Values = std::vector<std::pair<const Setting*, std::string>>;
void storeValues(platform::Registry& registry, const Values& values);

/// Takes the value away. Raises `CommandFailure` like `storeValue`.
void removeValue(platform::Registry& registry, const Setting& setting);

/// Raises `CommandFailure` when the store in `file` is missing or damaged; empty for a store that is no file of ours.
void requireStore(const std::filesystem::path& file);

}  // namespace kartix::host
