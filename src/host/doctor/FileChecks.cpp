#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "adapters/files/Files.h"
#include "adapters/settings/Settings.h"
#include "adapters/system/System.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "gateway/OrderBook.h"
#include "host/Installation.h"
#include "host/Settings.h"
#include "host/doctor/Doctor.h"
#include "runtime/Konfiguration.h"

namespace kartix::host {
namespace {

namespace fs = std::filesystem;

const Area area("Dateien");

constexpr std::string_view imageRoot = "KODSImageDir";

std::string setPath(const std::string& setting) { return "kartix settings set " + setting + " PFAD"; }

std::string openUp(const std::string& file, const std::string& setting) {
  return "als Eigentümer der Datei chmod u+rw " + asArgument(file) + ", oder " + setPath(setting);
}

/// True when files can be made in `directory`, found out by making one.
bool takesFiles(const fs::path& directory) { return adapters::canBeReplaced(directory / "kartix-doctor"); }

fs::path folderOf(const fs::path& file) { return file.has_parent_path() ? file.parent_path() : fs::path("."); }

/// The settings that hold a path.
std::vector<std::string> pathSettings(const Konfiguration& settings) {
  std::vector<std::string> names;
  for (const Setting& setting : settingsTable()) {
    const bool database = setting.path() == "FS.DBName" && settings.ServerIP.empty();
    if (setting.type == SettingType::path || database) names.push_back(setting.path());
  }
  return names;
}

/// Paths that lead nowhere here, or elsewhere with another working directory.
Findings checkPath(const std::string& name, const std::string& path) {
  // In the image directory alone either slash will do.
  const std::string native = name == imageRoot ? adapters::makeFiles()->nativePath(path) : path;
  if (isForeignPath(native)) {
    return {area.fault(name, name + " ist kein Pfad dieses Rechners: " + path, setPath(name))};
  }
  if (native.empty() || pathOf(native).is_absolute()) return {};
  return {area.note(name, name + " hängt vom Arbeitsverzeichnis ab: " + path,
                    "den ganzen Pfad nennen: " + setPath(name))};
}

/// Two bytes a character, as editors may store it, or no text at all.
bool holdsNul(const fs::path& file) {
  constexpr std::size_t enough = 4096;
  std::string start(enough, '\1');
  std::ifstream(file, std::ios::binary).read(start.data(), static_cast<std::streamsize>(start.size()));
  return start.find('\0') != std::string::npos;
}

/// The ini file holds settings, and the cookies of the session at the gateway.
Findings checkIniFile(const std::string& name) {
  const std::string setting = "InfoDatei";
  const fs::path file = pathOf(name);
  std::error_code error;
  const bool exists = fs::exists(file, error);
  if (exists && !adapters::system::canRead(file)) {
    return {area.fault(setting, "Die Ini-Datei ist nicht lesbar: " + name, openUp(name, setting))};
  }
  if (exists && holdsNul(file)) {
    return {area.fault(setting, "Die Ini-Datei ist kein Text mit einem Byte je Zeichen und gibt keine Werte: " + name,
                       "in Windows-1252 (ANSI) speichern; aus UTF-16 macht das iconv -f UTF-16 -t WINDOWS-1252 " +
                           asArgument(name))};
  }
  if (!adapters::canBeReplaced(file)) {
    return {area.fault(
        setting,
        "Die Ini-Datei ist nicht beschreibbar: " + name +
            "; jeder Beginn meldet sich neu an, und ein geändertes Passwort geht verloren",
        "diesem Benutzer das Schreiben in " + utf8Of(folderOf(file)) + " erlauben, oder " + setPath(setting))};
  }
  if (exists) return {};
  return {area.note(setting, "Die Ini-Datei fehlt noch: " + name, "anlegen, oder " + setPath(setting))};
}

Findings checkTraceFile(const std::string& name) {
  const std::string setting = "ZFER.DebugFile";
  const fs::path file = pathOf(name);
  const fs::path folder = folderOf(file);
  std::error_code error;
  if (!fs::is_directory(folder, error)) {
    return {area.fault(setting, "ZFER.DebugFile liegt in einem Verzeichnis, das es nicht gibt: " + name,
                       "mkdir -p " + asArgument(utf8Of(folder)) + ", oder " + setPath(setting))};
  }
  const bool exists = fs::exists(file, error);
  const bool writable =
      exists ? !fs::is_directory(file, error) && adapters::system::canWrite(file) : takesFiles(folder);
  if (writable) return {};
  return {area.fault(setting, "ZFER.DebugFile ist nicht beschreibbar: " + name,
                     "diesem Benutzer das Schreiben erlauben, oder " + setPath(setting))};
}

/// A folder of persons, by its number: beside those a file system may keep folders of its own.
bool holdsPersons(const fs::directory_entry& entry) {
  std::error_code error;
  return text::allDigits(utf8Of(entry.path().filename())) && entry.is_directory(error);
}

/// The first folder of persons in `directory`; empty when there is none, or none to be seen.
fs::path firstGroup(const fs::path& directory) {
  std::error_code error;
  for (fs::directory_iterator entry(directory, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    if (holdsPersons(*entry)) return entry->path();
  }
  return {};
}

/// Where photos lie: the first folder of persons that has none below it.
fs::path firstLeaf(fs::path directory) {
  constexpr int depth = 3;
  for (int i = 0; i < depth; ++i) {
    fs::path next = firstGroup(directory);
    if (next.empty()) break;
    directory = std::move(next);
  }
  return directory;
}

}  // namespace

Findings checkFiles(Installation& installation, const Findings& known) {
  const Konfiguration& settings = installation.settings();
  Findings findings;
  for (const std::string& name : pathSettings(settings))
    append(findings, checkPath(name, valueOf(installation, name)));
  const std::string trace = valueOf(installation, "ZFER.DebugFile");
  const auto sound = [&](const char* name) { return !isFaulty(findings, name) && !isFaulty(known, name); };
  if (!settings.InfoDatei.empty() && sound("InfoDatei")) append(findings, checkIniFile(settings.InfoDatei));
  if (!trace.empty() && sound("ZFER.DebugFile")) append(findings, checkTraceFile(trace));
  return findings;
}

Findings checkImages(Installation& installation, const Findings& known) {
  const Area images("Bilder");
  const std::string setting(imageRoot);
  const std::string root = valueOf(installation, setting);
  if (root.empty() || isFaulty(known, setting)) return {};
  const fs::path directory = pathOf(adapters::makeFiles()->nativePath(root));
  std::error_code error;
  if (!fs::is_directory(directory, error)) {
    return {images.fault(setting, "Es gibt kein Verzeichnis " + utf8Of(directory),
                         "verfügbar machen (einhängen), oder " + setPath(setting))};
  }
  const fs::path leaf = firstLeaf(directory);
  if (!takesFiles(leaf)) {
    return {images.fault(
        setting,
        "Das Bildverzeichnis ist nicht beschreibbar: " + utf8Of(leaf) +
            "; Bilder können für eine Bestellung nicht vorbereitet werden",
        "diesem Benutzer das Schreiben in den Verzeichnissen der Personen erlauben, oder " + setPath(setting))};
  }
  if (leaf != directory && !takesFiles(directory)) {
    return {images.note(setting, "In der Wurzel der Bilder kann nichts angelegt werden: " + utf8Of(directory),
                        "richtig so, wenn die Fachanwendung die Verzeichnisse der Personen anlegt")};
  }
  return {images.good("Verzeichnis " + utf8Of(directory))};
}

Findings checkOrderBook(Installation& installation, const Findings& known) {
  const Area orders("Bestellbuch");
  const std::string setting = "ZKR.Bestellbuch";
  OrderBook book = installation.orderBook();
  if (!book.kept() || isFaulty(known, setting)) return {};
  std::vector<BookEntry> entries;
  if (const auto failure = book.read(entries)) {
    return {orders.fault(setting, "ist nicht lesbar: " + book.path() + ": " + failure.message(),
                         openUp(book.path(), setting))};
  }
  const fs::path file = pathOf(book.path());
  std::error_code error;
  const bool exists = fs::exists(file, error);
  if (!(exists ? adapters::system::canWrite(file) : takesFiles(folderOf(file)))) {
    return {orders.fault(setting, "ist nicht beschreibbar: " + book.path() + "; nichts kann gesendet werden",
                         "diesem Benutzer das Schreiben in " + utf8Of(exists ? file : folderOf(file)) +
                             " erlauben, oder " + setPath(setting))};
  }
  const auto unclear =
      std::count_if(entries.begin(), entries.end(), [](const BookEntry& entry) { return isUnclear(entry.outcome); });
  const std::string all = std::to_string(entries.size());
  if (unclear == 0) return {orders.good(all + " Sendungen, keine unklar: " + book.path())};
  return {orders.fault(
      setting, "Offen oder unklar: " + std::to_string(unclear) + " von " + all + " Sendungen",
      "kartix orders --open; im Register anfragen, was angekommen ist; dann kartix orders --settle KENNUNG")};
}

}  // namespace kartix::host
