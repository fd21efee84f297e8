#include "runtime/Konfiguration.h"

#include <numeric>
#include <utility>

#include "common/CodePage.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "runtime/Global.h"
#include "runtime/Reporting.h"
#include "runtime/SettingsTable.h"
#include "runtime/Trace.h"

namespace kartix {
namespace {

/// From this day on the exchanges always go through the host's automation objects.
constexpr std::string_view automationSince = "20141117";

constexpr std::string_view sectionDatabase = "FS";
constexpr std::string_view sectionRegister = "ZKR";
constexpr std::string_view sectionGateway = "ZEVIS";

std::string padLeft(const std::string& text, std::size_t width) {
  const std::size_t length = text::length(text);
  return length < width ? std::string(width - length, '0') + text : text;
}

}  // namespace

Konfiguration::Konfiguration(platform::Registry& registry, platform::ProfileFiles& files, Trace& trace,
                             Global& global, Reporting& reporting)
    : registry_(registry), files_(files), trace_(trace), global_(global), reporting_(reporting) {}

std::string Konfiguration::RegReadString(std::string_view key, std::string_view name) {
  const auto value = registry_.RegQueryValueEx(key, name);
  if (!value) return {};
  switch (value->type) {
    case platform::RegistryValue::Type::dword:
      return std::to_string(value->number);
    case platform::RegistryValue::Type::string:
    case platform::RegistryValue::Type::expandString:
      if (text::length(value->text) > longestSetting) return {};
      return std::string(text::untilNul(value->text));
    case platform::RegistryValue::Type::other:
      break;
  }
  return {};
}

bool Konfiguration::RegWriteString(std::string_view key, std::string_view name, std::string_view value) {
  return registry_.RegCreateKeyEx(key) && registry_.RegSetValueEx(key, name, value);
}

std::string Konfiguration::GetIni(std::string_view Datei, std::string_view Sektion, std::string_view Schluessel) {
  trace_.TraceEnter("Global::GetIni");
  trace_.TraceParam("Datei", Datei);
  trace_.TraceParam("Sektion", Sektion);
  trace_.TraceParam("Schluessel", Schluessel);
  std::string result;
  if (Datei.empty()) {
    result = RegReadString(Sektion, Schluessel);
  } else {
    const std::string value = files_.GetPrivateProfileString(Sektion, Schluessel, "", longestSetting, Datei);
    if (!value.empty()) result = global_.NullTrim(value);
  }
  trace_.TraceLeave("Global::GetIni", result);
  return result;
}

std::string Konfiguration::parameter(std::string_view Sektion, std::string_view Schluessel, bool& FromIni,
                                     bool secret) {
  trace_.TraceEnter("Konfiguration::parameter");
  std::string iniValue = GetIni(InfoDatei, Sektion, Schluessel);
  std::string registryValue = GetIni({}, std::string(productKey) + std::string(Sektion), Schluessel);
  if (secret) {
    iniValue = global_.DecryptLong(iniValue);
    registryValue = global_.DecryptLong(registryValue);
  }
  registryValue = text::trim(registryValue);
  FromIni = registryValue.empty();
  std::string result = FromIni ? text::trim(iniValue) : registryValue;
  trace_.TraceLeave("Konfiguration::parameter", secret ? std::string_view("*****") : std::string_view(result));
  return result;
}

std::string Konfiguration::read(std::string_view section, std::string_view name) {
  bool fromIni = false;
  return parameter(section, name, fromIni, false);
}

std::string Konfiguration::readOr(std::string_view section, std::string_view name) {
  std::string value = read(section, name);
  return value.empty() ? std::string(settingEntry(section, name).fallback) : value;
}

std::string Konfiguration::readSecret(std::string_view section, std::string_view name) {
  bool fromIni = false;
  return parameter(section, name, fromIni, true);
}

std::string Konfiguration::readUntraced(std::string_view section, std::string_view name) {
  std::string value = text::trim(RegReadString(std::string(productKey) + std::string(section), name));
  if (!value.empty() || InfoDatei.empty()) return value;
  return text::trim(text::untilNul(files_.GetPrivateProfileString(section, name, "", longestSetting, InfoDatei)));
}

void Konfiguration::init() {
  silent_ = false;
  readAll();
}

void Konfiguration::readOnce() {
  if (read_) return;
  silent_ = true;
  readAll();
}

void Konfiguration::readAll() {
  read_ = true;
  trace_.TraceEnter("Konfiguration::init");
  const auto store = registry_.hold();
  InfoDatei = GetIni({}, productKey, "InfoDatei");
  const auto ini = files_.hold(InfoDatei);
  readDatabase();
  readSwitches();
  readGateway();
  readRegister();
  tracePaths();
  trace_.TraceLeave("Konfiguration::init");
}

void Konfiguration::tracePaths() {
  using Path = std::pair<const char*, std::string_view>;
  const std::string_view database = ServerIP.empty() ? DBName : std::string_view();
  for (const auto& [name, path] : {Path("InfoDatei", InfoDatei), Path("DBName", database), Path("ServerCA", ServerCA),
                                   Path("GATEWAYCert", GATEWAYCert), Path("GATEWAYPkey", GATEWAYPkey)}) {
    if (isForeignPath(path)) trace_.TraceLine({name, ": kein Pfad dieses Rechners: ", path}, trace_level::calls);
  }
}

void Konfiguration::readDatabase() {
  ServerIP = read(sectionDatabase, "ServerIP");
  ServerPort = read(sectionDatabase, "ServerPort");
  ServerTLS = readUntraced(sectionDatabase, "ServerTLS");
  ServerCA = readUntraced(sectionDatabase, "ServerCA");
  SysUser = read(sectionDatabase, "SysUser");
  SysPass = readSecret(sectionDatabase, "SysPass");
  DBName = read(sectionDatabase, "DBName");
  DBUser = read(sectionDatabase, "DBUser");
  DBPass = readSecret(sectionDatabase, "DBPass");
}

void Konfiguration::readSwitches() {
  ZKRNeu = read(sectionRegister, "ZKRNeu") == "1" || global_.TodayDB() >= automationSince;
  Testsystem = read(sectionRegister, "Testsystem") == "1";
  if (Testsystem && !silent_) reporting_.InfoMsg("Achtung, Testsystem", hintCaption);
  SektionKennung = read(sectionRegister, "SektionKennung");
  SektionKennung = countsAs(settingEntry(sectionRegister, "SektionKennung"), SektionKennung);
}

void Konfiguration::readGateway() {
  ZEVISUserName = read(SektionKennung, "ZEVISUserName");
  ZEVISPass = parameter(SektionKennung, "ZEVISPass", ZEVISPassFromIni, true);
  AllowPassChange = read(SektionKennung, "AllowPassChange") == "1";
  ZEVISAuthURI = read(sectionGateway, "ZEVISAuthURI");
  ZEVISServer = read(sectionGateway, "ZEVISServer");
  ZEVISPort = read(sectionGateway, "ZEVISPort");
  GATEWAY = leadingInt16(read(sectionGateway, "GATEWAY"));
  GATEWAYCert = read(sectionGateway, "GATEWAYCert");
  GATEWAYPkey = read(sectionGateway, "GATEWAYPkey");
  GATEWAYCertPass = readSecret(sectionGateway, "GATEWAYCertPass");
  if (silent_) return;
  if (GATEWAYCert.empty() && GATEWAY > 0) reporting_.ReportError(102);
  if (GATEWAYPkey.empty() && GATEWAY > 0) reporting_.ReportError(103);
}

void Konfiguration::readRegister() {
  KENZA = read(sectionRegister, "KENZA");
  BestellURI = read(sectionRegister, "BestellURI");
  AnfrageURI = read(sectionRegister, "AnfrageURI");
  MitteilungsURI = read(sectionRegister, "MitteilungsURI");
  ZPPER = read(sectionRegister, "ZPPER");
  BehoerdeVorderseite = read(sectionRegister, "BehoerdeVorderseite");
  BehoerdeRueckseite = read(sectionRegister, "BehoerdeRueckseite");
  DTDHost1 = readOr(sectionGateway, "DTDHost1");
  DTDHost2 = readOr(sectionGateway, "DTDHost2");
  SecureProxy = read(sectionGateway, "SecureProxy");
  Bestellbuch = readUntraced(sectionRegister, "Bestellbuch");
  const std::string ansi = codepage::toAnsi(ZPPER);
  const unsigned sum = std::accumulate(ansi.begin(), ansi.end(), 0U,
                                       [](unsigned total, char c) { return total + static_cast<unsigned char>(c); });
  CookieSlot = static_cast<std::int16_t>(sum % 5);
}

bool Konfiguration::iniKeeps(std::string_view value) const {
  const auto read = files_.asReadBack(value);
  // As `GetIni` takes it.
  return read && text::trim(text::untilNul(text::left(*read, longestSetting - 1))) == value;
}

bool Konfiguration::writeIni(std::string_view Schluessel, std::string_view value) {
  return files_.WritePrivateProfileString(SektionKennung, Schluessel, value, InfoDatei);
}

bool Konfiguration::keepsZEVISPass(std::string_view newPass) const {
  const std::string scrambled = CryptLong(newPass);
  return iniKeeps(scrambled) && text::trim(DecryptLong(scrambled)) == newPass;
}

bool Konfiguration::SaveZEVISPass(std::string_view newPass) {
  const std::string scrambled = global_.CryptLong(newPass);
  const bool stored =
      keepsZEVISPass(newPass) &&
      (ZEVISPassFromIni ? writeIni("ZEVISPass", scrambled)
                        : RegWriteString(std::string(productKey) + SektionKennung, "ZEVISPass", scrambled));
  // The clerk is not told, but whoever looks for the reason of the next refused login finds it.
  if (!stored) trace_.TraceLine("Neues ZEVIS-Passwort konnte nicht gespeichert werden", trace_level::calls);
  return stored;
}

bool Konfiguration::GetImageDir(std::string_view personennummer) {
  constexpr std::size_t numberWidth = 10;
  constexpr std::size_t groupWidth = 5;
  constexpr std::int32_t groupSize = 250;

  ImageDir.clear();
  std::string root = text::trim(GetIni({}, imageRootKey, "KODSImageDir"));
  if (root.empty()) return false;
  if (!root.ends_with('\\')) root += '\\';
  const std::string number = padLeft(text::trim(personennummer), numberWidth);
  const std::string last = text::mid(number, text::length(number) - groupWidth);
  const std::string group = std::to_string(leadingInt32(last) / groupSize * groupSize);
  ImageDir = root + text::mid(number, 0, 2) + "\\" + text::mid(number, 2, 3) + "\\" + padLeft(group, groupWidth) +
             "\\" + number;
  return true;
}

}  // namespace kartix
