#include "host/Settings.h"

#include <algorithm>

#include "common/Text.h"
#include "host/Command.h"
#include "platform/Registry.h"
#include "runtime/Konfiguration.h"

namespace kartix::host {
namespace {

std::vector<Setting> makeSettings() {
  const std::string product(productKey);
  std::vector<Setting> settings = {{product, "InfoDatei", "InfoDatei"}};
  const auto add = [&](const std::string& section, std::string_view names, bool secret = false) {
    const std::string key = product + section + "\\";
    for (std::size_t begin = 0; begin < names.size();) {
      const std::size_t end = std::min(names.find(' ', begin), names.size());
      const std::string name(names.substr(begin, end - begin));
      settings.push_back({key, name, std::string(section).append(".").append(name), secret});
      begin = end + 1;
    }
  };
  add("FS", "ServerIP ServerPort SysUser");
  add("FS", "SysPass", true);
  add("FS", "DBName DBUser");
  add("FS", "DBPass", true);
  add("ZKR",
      "ZKRNeu Testsystem SektionKennung KENZA ZPPER AnfrageURI BestellURI MitteilungsURI BehoerdeVorderseite "
      "BehoerdeRueckseite Bestellbuch TestClerk");
  add("ZEVIS", "ZEVISServer ZEVISPort ZEVISAuthURI GATEWAY GATEWAYCert GATEWAYPkey");
  add("ZEVIS", "GATEWAYCertPass", true);
  add("ZEVIS", "SecureProxy DTDHost1 DTDHost2");
  for (const char* account : {"ZEVIS", "ZKR", "KBA"}) {
    add(account, "ZEVISUserName");
    add(account, "ZEVISPass", true);
    add(account, "AllowPassChange");
  }
  add("ZFER", "DebugLevel DebugFile");
  settings.push_back({std::string(imageRootKey), "KODSImageDir", "KODSImageDir"});
  return settings;
}

}  // namespace

const std::vector<Setting>& allSettings() {
  static const std::vector<Setting> settings = makeSettings();
  return settings;
}

const Setting& findSetting(std::string_view path) {
  const Setting* found = nullptr;
  for (const Setting& setting : allSettings()) {
    if (text::equalNoCase(setting.path, path)) return setting;
    if (!text::equalNoCase(setting.name, path)) continue;
    if (found)
      throw UsageError("\"" + std::string(path) + "\" stands in several sections: name it as " + found->path);
    found = &setting;
  }
  if (!found) throw UsageError("no setting is called \"" + std::string(path) + "\"; kartix settings list names them");
  return *found;
}

std::optional<std::string> storedValue(platform::Registry& registry, const Setting& setting) {
  const auto value = registry.RegQueryValueEx(setting.key, setting.name);
  if (!value || value->type == platform::RegistryValue::Type::other) return std::nullopt;
  if (value->type == platform::RegistryValue::Type::dword) return std::to_string(value->number);
  return std::string(text::untilNul(value->text));
}

void checkValue(const Setting& setting, const std::string& value) {
  if (!text::isValidUtf8(value)) throw UsageError(setting.path + ": the value is not UTF-8 text");
  if (value.find('\0') != std::string::npos) throw UsageError(setting.path + ": the value holds a NUL character");
  if (text::length(value) > longestSetting) {
    throw UsageError(setting.path + ": the value is longer than " + std::to_string(longestSetting) + " characters");
  }
}

void storeValue(platform::Registry& registry, const Setting& setting, const std::string& value) {
  checkValue(setting, value);
  if (!registry.RegCreateKeyEx(setting.key) || !registry.RegSetValueEx(setting.key, setting.name, value)) {
    throw CommandFailure(setting.path + ": the settings store cannot be written");
  }
}

}  // namespace kartix::host
