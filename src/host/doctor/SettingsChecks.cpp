#include <algorithm>
#include <string>

#include "adapters/settings/Settings.h"
#include "adapters/system/System.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "host/Installation.h"
#include "host/Settings.h"
#include "host/doctor/Doctor.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "runtime/Konfiguration.h"

namespace kartix::host {
namespace {

const Area area("Einstellungen");

std::string quoted(const std::string& text) { return "„" + text + "“"; }

std::string setCommand(const Setting& setting, const std::string& value) {
  const std::string command = "kartix settings set " + setting.path();
  return setting.secret() ? command + " (fragt nach dem Passwort)" : command + " " + value;
}

std::string meaningOf(const Setting& setting) {
  std::string_view meaning = setting.meaning;
  if (meaning.ends_with('.')) meaning.remove_suffix(1);
  return std::string(meaning);
}

const char* placeholder(const Setting& setting) {
  switch (setting.type) {
    case SettingType::service:
      return "/PFAD";
    case SettingType::path:
      return "DATEI";
    case SettingType::address:
      return "RECHNER:PORT";
    case SettingType::number:
      return "ZAHL";
    case SettingType::ports:
      return "PORT";
    default:
      return "WERT";
  }
}

bool isSwitchedOn(Installation& installation, std::string_view path) { return valueOf(installation, path) == "1"; }

/// The account at the gateway is taken from one section; the other two do not matter.
bool isRead(const Setting& setting, const Konfiguration& settings) {
  const bool account = setting.name == "ZEVISUserName" || setting.name == "ZEVISPass";
  return !account || setting.section == settings.SektionKennung;
}

/// What other settings ask for beyond the table; empty for nothing.
std::string demandedBy(const Setting& setting, Installation& installation) {
  const std::string path = setting.path();
  const Konfiguration& settings = installation.settings();
  const bool server = !settings.ServerIP.empty();
  if (server && (path == "FS.SysUser" || path == "FS.DBUser")) return "den Datenbankserver (FS.ServerIP)";
  if (settings.GATEWAY == 2 && path == "ZEVIS.SecureProxy") return "ZEVIS.GATEWAY 2";
  if (settings.GATEWAY > 0 && (path == "ZEVIS.GATEWAYCert" || path == "ZEVIS.GATEWAYPkey"))
    return "ZEVIS.GATEWAY " + std::to_string(settings.GATEWAY);
  if (path == "ZFER.DebugFile" && leadingInt16(valueOf(installation, "ZFER.DebugLevel")) > 0)
    return "ZFER.DebugLevel";
  if (setting.neededBy == needed_by::all) return "jeden Vorgang";
  return operationNames(setting.neededBy);
}

/// A value that its type does not allow, and what it is taken for.
Finding misfitting(const Setting& setting, const std::string& value) {
  std::string text = setting.path() + " " + misfit(setting, value) + ", ist aber " + quoted(value);
  std::string example = placeholder(setting);
  if (setting.type == SettingType::onOff || setting.type == SettingType::selection) {
    example = countsAs(setting, value);
    text += " und gilt als " + example;
  }
  std::string mend = setCommand(setting, example);
  if (setting.type == SettingType::onOff) mend += ", oder 1";
  if (setting.type == SettingType::selection) mend += ", oder was gemeint ist";
  return area.fault(setting.path(), text, mend);
}

Findings checkOne(const Setting& setting, Installation& installation) {
  const std::string value = valueOf(installation, setting.path());
  if (value.empty()) {
    const std::string demand = demandedBy(setting, installation);
    if (demand.empty() || !isRead(setting, installation.settings())) return {};
    return {area.fault(setting.path(),
                       setting.path() + " ist leer (" + meaningOf(setting) + "); gebraucht für: " + demand,
                       setCommand(setting, placeholder(setting)))};
  }
  if (misfit(setting, value).empty()) return {};
  return {misfitting(setting, value)};
}

}  // namespace

std::string valueOf(Installation& installation, std::string_view path) {
  const ValueInForce found = valueInForce(installation.registry(), installation.profileFiles(), findSetting(path));
  return text::trim(found.value);
}

Findings checkStore(Installation& installation) {
  const std::filesystem::path& file = installation.registryFile();
  const std::string name = file.empty() ? "der Registrierung des Benutzers" : utf8Of(file);
  const std::string import = "kartix settings import SICHERUNG.reg";
  std::error_code error;
  const bool ours = !file.empty();
  if (ours && !std::filesystem::exists(file, error)) {
    return {area.fault("", "Es gibt keinen Einstellungsspeicher " + name,
                       import + ", oder kartix settings set NAME WERT")};
  }
  if (ours && !adapters::system::canRead(file)) {
    return {area.fault("", "Der Einstellungsspeicher ist nicht lesbar: " + name, "chmod u+rw " + asArgument(name))};
  }
  if (ours && !adapters::registryFileTrouble(file).empty()) {
    return {area.fault("", "Der Einstellungsspeicher ist beschädigt oder kein Export der Registrierung: " + name,
                       "beiseite legen und eine Sicherung übernehmen: mv " + asArgument(name) + " " +
                           asArgument(name + ".defekt") + "; " + import)};
  }
  const auto isStored = [&](const Setting& each) { return storedValue(installation.registry(), each).has_value(); };
  if (std::none_of(settingsTable().begin(), settingsTable().end(), isStored)) {
    return {area.fault("", "Im Einstellungsspeicher steht keine Einstellung: " + name, import)};
  }
  Findings findings = {area.good("gelesen aus " + name)};
  using std::filesystem::perms;
  const perms others = perms::group_all | perms::others_all;
  if (ours && (std::filesystem::status(file, error).permissions() & others) != perms::none) {
    findings.push_back(area.note("", name + " enthält Passwörter, und andere dürfen die Datei lesen",
                                 "chmod 600 " + asArgument(name)));
  }
  if (ours && !adapters::canBeReplaced(file)) {
    findings.push_back(area.note("", name + " ist nicht beschreibbar: ein geändertes Gateway-Passwort geht verloren",
                                 "diesem Benutzer das Schreiben im Verzeichnis der Datei erlauben"));
  }
  return findings;
}

Findings checkValues(Installation& installation) {
  Findings findings;
  for (const Setting& setting : settingsTable()) append(findings, checkOne(setting, installation));
  if (isSwitchedOn(installation, "ZKR.Testsystem")) {
    findings.push_back(
        area.fault("ZKR.Testsystem",
                   "ZKR.Testsystem ist an: jeder Beginn zeigt einen Hinweis, und Bestellungen tragen den "
                   "Staat TST",
                   "kartix settings set ZKR.Testsystem 0"));
  }
  if (isSwitchedOn(installation, "ZKR.TestClerk")) {
    findings.push_back(area.note(
        "ZKR.TestClerk", "Skripte dürfen den Sachbearbeiter spielen (ZKR.TestClerk): nur für Testinstallationen",
        "kartix settings set ZKR.TestClerk 0"));
  }
  return findings;
}

}  // namespace kartix::host
