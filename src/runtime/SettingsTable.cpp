#include "runtime/SettingsTable.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "common/Numbers.h"
#include "common/Text.h"
#include "runtime/Konfiguration.h"

namespace kartix {
namespace {

using Type = SettingType;
using namespace needed_by;

constexpr std::string_view port = "1..65535";

/// The account at the gateway stands in one of three sections.
constexpr std::string_view accountUser = "Benutzer am Gateway";
constexpr std::string_view accountPassword = "Passwort dazu.";
constexpr std::string_view accountChange = "„1“: Sachbearbeiter dürfen das Passwort ändern.";

constexpr SettingEntry account(std::string_view section, int which) {
  if (which == 0) return {section, "ZEVISUserName", Type::text, "", "", false, all, accountUser};
  if (which == 1) return {section, "ZEVISPass", Type::password, "", "", false, all, accountPassword};
  return {section, "AllowPassChange", Type::onOff, "0", "", false, none, accountChange};
}

constexpr auto table = std::to_array<SettingEntry>({
    {"", "InfoDatei", Type::path, "", "", true, none, "Pfad der Ini-Datei."},
    {"FS", "ServerIP", Type::text, "", "", false, none, "Adresse des Datenbankservers (PostgreSQL)."},
    {"FS", "ServerPort", Type::ports, "", port, false, none, "Port des Servers"},
    {"FS", "ServerTLS", Type::mode, "prefer", "disable|allow|prefer|require|verify-ca|verify-full", false, none,
     "Verschlüsselung zum Datenbankserver"},
    {"FS", "ServerCA", Type::path, "", "", false, none,
     "Zertifikate der Stellen, denen dabei vertraut wird (PEM-Datei)"},
    {"FS", "SysUser", Type::text, "", "", false, none, "Systembenutzer"},
    {"FS", "SysPass", Type::password, "", "", false, none, "Passwort dazu"},
    {"FS", "DBName", Type::text, "", "", false, all, "Name der Datenbank, ohne Server der Pfad der Datei"},
    {"FS", "DBUser", Type::text, "", "", false, none, "Benutzer der Datenbank"},
    {"FS", "DBPass", Type::password, "", "", false, none, "Passwort dazu"},
    {"ZKR", "ZKRNeu", Type::onOff, "0", "", false, none,
     "„1“: die Vorgänge laufen über die Objekte des Fachverfahrens."},
    {"ZKR", "Testsystem", Type::onOff, "0", "", false, none, "„1“: Testinstallation."},
    {"ZKR", "SektionKennung", Type::selection, "ZKR", "ZEVIS|ZKR|KBA", false, none, "Abschnitt des Gateway-Kontos"},
    {"ZKR", "KENZA", Type::text, "", "", false, all, "Kennzahl der Behörde"},
    {"ZKR", "ZPPER", Type::text, "", "", false, all, "Kennung der sendenden Stelle in den Nachrichten"},
    {"ZKR", "AnfrageURI", Type::service, "", "", false, inquiry, "Pfad der Anfrage beim Gateway"},
    {"ZKR", "BestellURI", Type::service, "", "", false, order | cancellation, "Pfad für Bestellung und Stornierung"},
    {"ZKR", "MitteilungsURI", Type::service, "", "", false, notification, "Pfad für Mitteilungen"},
    {"ZKR", "BehoerdeVorderseite", Type::text, "", "", false, order,
     "Text der Behörde auf der Vorderseite der Karte"},
    {"ZKR", "BehoerdeRueckseite", Type::text, "", "", false, order,
     "Name und Anschrift der Behörde auf der Rückseite"},
    {"ZKR", "Bestellbuch", Type::path, "", "", false, none, "Datei des [Bestellbuchs](#bestellbuch)"},
    {"ZKR", "TestClerk", Type::onOff, "0", "", true, none, "„1“: ein Skript darf den Sachbearbeiter spielen"},
    {"ZEVIS", "ZEVISServer", Type::text, "", "", false, all, "Name oder Adresse des Gateways"},
    {"ZEVIS", "ZEVISPort", Type::number, "", port, false, all, "Port, 1 bis 65535"},
    {"ZEVIS", "ZEVISAuthURI", Type::service, "", "", false, all, "Pfad der Anmeldung"},
    {"ZEVIS", "GATEWAY", Type::number, "0", "0..2", false, none, "0: HTTP. 1: HTTPS mit Clientzertifikat."},
    {"ZEVIS", "GATEWAYCert", Type::path, "", "", false, none, "Clientzertifikat (PEM-Datei)"},
    {"ZEVIS", "GATEWAYPkey", Type::path, "", "", false, none, "privater Schlüssel dazu (PEM-Datei)"},
    {"ZEVIS", "GATEWAYCertPass", Type::password, "", "", false, none, "Passwort des privaten Schlüssels"},
    {"ZEVIS", "SecureProxy", Type::address, "", "", false, none, "Adresse des sicheren Proxys, „Rechner:Port“."},
    {"ZEVIS", "DTDHost1", Type::text, "test.zevis.example", "", false, none,
     "Name des Testgateways in den Dokumenttypen"},
    {"ZEVIS", "DTDHost2", Type::text, "zevis.example", "", false, none,
     "Name des Gateways in den Dokumenttypen sonst"},
    account("ZEVIS", 0),
    account("ZEVIS", 1),
    account("ZEVIS", 2),
    account("ZKR", 0),
    account("ZKR", 1),
    account("ZKR", 2),
    account("KBA", 0),
    account("KBA", 1),
    account("KBA", 2),
    {"ZFER", "DebugLevel", Type::number, "0", "0..32767", true, none, "Stufe; 0, leer oder keine Zahl: keine Datei"},
    {"ZFER", "DebugFile", Type::path, "", "", true, none, "Pfad der Datei."},
    {"", "KODSImageDir", Type::path, "", "", true, order, "Wurzel der Fotos und Unterschriften"},
});

bool isNumber(std::string_view text) {
  return !text.empty() && text.size() <= 9 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::pair<std::int32_t, std::int32_t> bounds(const SettingEntry& setting) {
  const auto dots = setting.allowed.find("..");
  return {leadingInt32(setting.allowed), leadingInt32(setting.allowed.substr(dots + 2))};
}

bool isWithin(std::string_view text, std::pair<std::int32_t, std::int32_t> bounds) {
  return isNumber(text) && leadingInt32(text) >= bounds.first && leadingInt32(text) <= bounds.second;
}

bool areAllWithin(std::string_view list, std::pair<std::int32_t, std::int32_t> bounds) {
  for (;;) {
    const auto comma = list.find(',');
    if (!isWithin(text::trim(list.substr(0, comma)), bounds)) return false;
    if (comma == std::string_view::npos) return true;
    list.remove_prefix(comma + 1);
  }
}

bool isService(std::string_view value) {
  const bool graphic = std::all_of(value.begin(), value.end(), [](unsigned char c) { return c > ' ' && c != 0x7F; });
  return graphic && (value.starts_with('/') || value.find("://") != std::string_view::npos);
}

bool isAddress(std::string_view value) {
  const auto colon = value.rfind(':');
  if (colon == std::string_view::npos || colon == 0 || !isNumber(value.substr(colon + 1))) return false;
  const std::int32_t number = leadingInt32(value.substr(colon + 1));
  return number >= 1 && number <= 65535;
}

std::string listed(std::string_view allowed) { return text::replaceAll(std::string(allowed), "|", ", "); }

}  // namespace

std::string SettingEntry::path() const {
  return section.empty() ? std::string(name) : std::string(section).append(".").append(name);
}

std::string SettingEntry::key() const {
  if (name == "KODSImageDir") return std::string(imageRootKey);
  return section.empty() ? std::string(productKey) : std::string(productKey).append(section).append("\\");
}

std::span<const SettingEntry> settingsTable() { return table; }

std::string operationNames(unsigned neededBy) {
  constexpr std::array<std::pair<unsigned, const char*>, 4> names = {{{inquiry, "ZKRAnfrage"},
                                                                      {order, "FahrerKartenBestellung"},
                                                                      {cancellation, "KartenStorno"},
                                                                      {notification, "KartenMitteilung"}}};
  std::string text;
  for (const auto& [operation, name] : names) {
    if ((neededBy & operation) != 0) text.append(text.empty() ? "" : ", ").append(name);
  }
  return text;
}

bool isAmong(const SettingEntry& selection, std::string_view value) {
  return !value.empty() && value.find('|') == std::string_view::npos &&
         ("|" + std::string(selection.allowed) + "|").find("|" + std::string(value) + "|") != std::string::npos;
}

std::string misfit(const SettingEntry& setting, std::string_view value) {
  if (value.empty()) return {};
  switch (setting.type) {
    case SettingType::number: {
      const auto [least, most] = bounds(setting);
      if (isWithin(value, {least, most})) return {};
      return "muss eine Zahl von " + std::to_string(least) + " bis " + std::to_string(most) + " sein";
    }
    case SettingType::ports: {
      const auto [least, most] = bounds(setting);
      if (areAllWithin(value, {least, most})) return {};
      return "muss eine Zahl von " + std::to_string(least) + " bis " + std::to_string(most) +
             " sein, oder mehrere, durch Kommas getrennt";
    }
    case SettingType::onOff:
      return value == "0" || value == "1" ? "" : "muss 1 (ein) oder 0 (aus) sein";
    case SettingType::selection:
    case SettingType::mode:
      return isAmong(setting, value) ? "" : "muss so geschrieben eines davon sein: " + listed(setting.allowed);
    case SettingType::service:
      return isService(value) ? ""
                              : "muss ein Pfad sein, der mit / beginnt, oder eine ganze Adresse, ohne Leerzeichen";
    case SettingType::address:
      return isAddress(value) ? "" : "muss die Form RECHNER:PORT haben";
    case SettingType::text:
    case SettingType::password:
    case SettingType::path:
      break;
  }
  return {};
}

std::string countsAs(const SettingEntry& setting, std::string_view value) {
  if (value.empty()) return std::string(setting.fallback);
  switch (setting.type) {
    case SettingType::onOff:
      return value == "1" ? "1" : "0";
    case SettingType::selection:
      return std::string(isAmong(setting, value) ? value : setting.fallback);
    default:
      return std::string(value);
  }
}

const SettingEntry& settingEntry(std::string_view section, std::string_view name) {
  const auto found = std::find_if(table.begin(), table.end(), [&](const SettingEntry& each) {
    return each.section == section && each.name == name;
  });
  if (found == table.end()) throw std::logic_error("no setting " + std::string(name));
  return *found;
}

}  // namespace kartix
