#include "host/Settings.h"

#include "adapters/settings/Settings.h"
#include "common/Paths.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "host/Command.h"
#include "host/RegistryFile.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "runtime/Konfiguration.h"

namespace kartix::host {
namespace {

/// True for what the component passes over to look for a value elsewhere.
bool isNone(const Setting& setting, const std::string& value) {
  return text::trim(setting.secret() ? DecryptLong(value) : value).empty();
}

/// `place` is what was to be written, with a colon, where that is one setting.
[[noreturn]] void refuseWrite(const platform::Registry& registry, const std::string& place) {
  const std::string reason = registry.writeFailure();
  throw CommandFailure(place + "Der Einstellungsspeicher kann nicht geschrieben werden" +
                       (reason.empty() ? "" : ": " + reason));
}

}  // namespace

const Setting& findSetting(std::string_view path) {
  const Setting* found = nullptr;
  for (const Setting& setting : settingsTable()) {
    if (text::equalNoCase(setting.path(), path)) return setting;
    if (!text::equalNoCase(setting.name, path)) continue;
    if (found)
      throw UsageError("\"" + std::string(path) + "\" gibt es in mehreren Abschnitten: mit Abschnitt angeben, etwa " +
                       found->path());
    found = &setting;
  }
  if (!found)
    throw UsageError("Keine Einstellung heißt \"" + std::string(path) + "\"; kartix settings list nennt alle");
  return *found;
}

std::optional<std::string> storedValue(platform::Registry& registry, const Setting& setting) {
  const auto value = registry.RegQueryValueEx(setting.key(), setting.name);
  if (!value || value->type == platform::RegistryValue::Type::other) return std::nullopt;
  if (value->type == platform::RegistryValue::Type::dword) return std::to_string(value->number);
  return std::string(text::untilNul(value->text));
}

ValueInForce valueInForce(platform::Registry& registry, platform::ProfileFiles& files, const Setting& setting) {
  using Source = ValueInForce::Source;
  const std::string stored = storedValue(registry, setting).value_or("");
  if (text::length(stored) <= longestSetting && !isNone(setting, stored)) return {stored, Source::store};
  const std::string file = storedValue(registry, settingEntry("", "InfoDatei")).value_or("");
  if (!setting.storeOnly && !file.empty()) {
    const std::string value = files.GetPrivateProfileString(setting.section, setting.name, "", longestSetting, file);
    if (!isNone(setting, value)) return {std::string(text::untilNul(value)), Source::iniFile};
  }
  return {std::string(setting.fallback), Source::fallback};
}

std::string_view sourceName(ValueInForce::Source source) {
  if (source == ValueInForce::Source::store) return "store";
  return source == ValueInForce::Source::iniFile ? "ini file" : "default";
}

std::string_view sourceInGerman(ValueInForce::Source source) {
  if (source == ValueInForce::Source::store) return "Einstellungsspeicher";
  return source == ValueInForce::Source::iniFile ? "Ini-Datei" : "Vorgabe";
}

void checkValue(const Setting& setting, const std::string& value) {
  if (!text::isValidUtf8(value)) throw UsageError(setting.path() + ": Der Wert ist kein Text in UTF-8");
  if (value.find('\0') != std::string::npos) throw UsageError(setting.path() + ": Der Wert enthält ein NUL-Zeichen");
  if (text::length(value) > longestSetting) {
    throw UsageError(setting.path() + ": Der Wert ist länger als " + std::to_string(longestSetting) + " Zeichen");
  }
}

void checkType(const Setting& setting, const std::string& value) {
  const std::string wanted = misfit(setting, value);
  if (!wanted.empty()) throw UsageError(setting.path() + " " + wanted);
}

void storeValue(platform::Registry& registry, const Setting& setting, const std::string& value) {
  storeValues(registry, {{&setting, value}});
}

void storeValues(platform::Registry& registry, const Values& values) {
  std::vector<platform::RegistryEntry> entries;
  for (const auto& [setting, value] : values) {
    checkValue(*setting, value);
    entries.push_back({setting->key(), std::string(setting->name), value});
  }
  if (!registry.RegSetValues(entries)) {
    refuseWrite(registry, values.size() == 1 ? values.front().first->path() + ": " : "");
  }
}

void removeValue(platform::Registry& registry, const Setting& setting) {
  if (!registry.RegDeleteValue(setting.key(), setting.name)) refuseWrite(registry, setting.path() + ": ");
}

void requireStore(const std::filesystem::path& file) {
  const std::string trouble = file.empty() ? "" : adapters::registryFileTrouble(file);
  if (!trouble.empty())
    throw CommandFailure("Der Einstellungsspeicher " + utf8Of(file) + " liefert nichts: " + trouble);
}

}  // namespace kartix::host
