#include "host/demo/DemoInstallation.h"

#include <fstream>
#include <utility>
#include <vector>

#include "adapters/settings/Settings.h"
#include "adapters/sqlite/HostDatabase.h"
#include "common/Dates.h"
#include "common/Paths.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "component/Component.h"
#include "host/Command.h"
#include "host/Settings.h"
#include "host/demo/SampleImages.h"
#include "hostdb/Own.h"
#include "kartix/DBETXTDatabase.h"
#include "platform/FileSystem.h"
#include "platform/Registry.h"
#include "runtime/Runtime.h"
#include "simulator/Accounts.h"
#include "simulator/SamplePersons.h"
#include "simulator/Simulator.h"

namespace kartix::host {
namespace {

namespace fs = std::filesystem;

using Columns = std::vector<std::pair<const char*, std::string>>;

std::string insertStatement(const char* table, const Columns& columns) {
  std::string names;
  std::string values;
  for (const auto& [name, value] : columns) {
    names.append(names.empty() ? "" : ", ").append(name);
    values.append(values.empty() ? "'" : ", '").append(text::replaceAll(value, "'", "''")).append("'");
  }
  return std::string("insert into ").append(table) + " (" + names + ") values (" + values + ")";
}

std::string displayDate(std::string_view date) {
  if (date.empty()) return {};
  return text::mid(date, 6, 2) + "." + text::mid(date, 4, 2) + "." + text::mid(date, 0, 4);
}

std::string personRow(const simulator::SamplePerson& p) {
  return insertStatement("personalien", {{"personennummer", std::string(p.personennummer)},
                                         {"anrede", std::string(p.anrede)},
                                         {"titel", std::string(p.titel)},
                                         {"vornamekomplett", std::string(p.vornamen)},
                                         {"zusatzf", std::string(p.zusatzf)},
                                         {"familienname", std::string(p.familienname)},
                                         {"zusatzg", std::string(p.zusatzg)},
                                         {"geburtsname", std::string(p.geburtsname)},
                                         {"geburtsdatum", std::string(p.geburtsdatum)},
                                         {"vhkgebdat", displayDate(p.geburtsdatum)},
                                         {"geburtsort", std::string(p.geburtsort)},
                                         {"strasse", std::string(p.strasse)},
                                         {"plz", std::string(p.plz)},
                                         {"wohnort", std::string(p.wohnort)},
                                         {"fsnr", std::string(p.fsnr)}});
}

std::string cardRow(const simulator::SampleCard& c, const simulator::SamplePerson& p) {
  return insertStatement("fahrerkarte", {{"personennummer", std::string(c.personennummer)},
                                         {"lfdnr", std::string(c.lfdnr)},
                                         {"vorgangschl", std::string(c.vorgangschl)},
                                         {"kartennr", std::string(c.kartennr)},
                                         {"kartennralt", std::string(c.kartennralt)},
                                         {"antragsdatum", std::string(c.antragsdatum)},
                                         {"bestelldatum", std::string(c.bestelldatum)},
                                         {"gueltigab", std::string(c.gueltigab)},
                                         {"gueltigbis", std::string(c.gueltigbis)},
                                         {"abgabestatus", std::string(c.abgabestatus)},
                                         {"stext", std::string(c.stext)},
                                         {"changedate", std::string(c.changedate)},
                                         {"familienname", std::string(p.familienname)},
                                         {"vornamen", std::string(p.vornamen)},
                                         {"kfsnr", std::string(p.fsnr)},
                                         {"kfsstaat", "D"},
                                         {"fsverwaltung", std::string(simulator::sampleAuthorityName)},
                                         {"sprache", "DE"}});
}

const simulator::SamplePerson& holder(std::string_view personennummer) {
  for (const simulator::SamplePerson& person : simulator::samplePersons()) {
    if (person.personennummer == personennummer) return person;
  }
  throw CommandFailure("a sample card has no holder");
}

/// Says that the files beside it are a demonstration's. It is made before them, so that a demonstration that was
/// broken off is known too.
constexpr const char* marker = ".kartix-demo";

/// Takes away what an earlier demonstration left.
void removeEarlier(const fs::path& directory) {
  const bool ours = fs::exists(directory / marker);
  for (const char* name : {"registry.reg", "kartix.ini", "host.db", "images", "transcripts"}) {
    const fs::path file = directory / name;
    if (!ours && fs::exists(file)) {
      throw CommandFailure(utf8Of(file) + " is not of an earlier demonstration: name another directory");
    }
    fs::remove_all(file);
  }
}

void mark(const fs::path& directory) {
  if (!std::ofstream(directory / marker)) throw CommandFailure(utf8Of(directory) + ": cannot be written");
}

}  // namespace

DemoInstallation::DemoInstallation(const fs::path& directory) : directory_(fs::absolute(directory)) {
  fs::create_directories(directory_);
  removeEarlier(directory_);
  mark(directory_);
  fs::create_directories(transcripts());
  writeSettings();
  adapters::createHostDatabase(directory_ / "host.db");
  fillDatabase();
  writeImages();
}

void DemoInstallation::set(const char* setting, const std::string& value) const {
  const auto registry = adapters::makeRegFile(registryFile());
  const Setting& known = findSetting(setting);
  storeValue(*registry, known, known.secret() ? CryptLong(value) : value);
}

void DemoInstallation::setAgain() const {
  set("FS.DBName", utf8Of(directory_ / "host.db"));
  set("ZKR.ZEVISPass", std::string(simulator::samplePassword));
}

void DemoInstallation::writeSettings() const {
  set("InfoDatei", utf8Of(directory_ / "kartix.ini"));
  setAgain();
  set("ZKR.KENZA", std::string(simulator::sampleAuthorityKey));
  set("ZKR.ZPPER", "argo-köln-17");
  set("ZKR.BehoerdeVorderseite", std::string(simulator::sampleAuthorityName));
  set("ZKR.BehoerdeRueckseite", std::string(simulator::sampleAuthorityName) + ", Stadthaus, 50679 Köln");
  set("ZKR.AnfrageURI", simulator::paths::inquiry);
  set("ZKR.BestellURI", simulator::paths::order);
  set("ZKR.MitteilungsURI", simulator::paths::notification);
  set("ZKR.ZEVISUserName", "kartix");
  set("ZKR.AllowPassChange", "1");
  set("ZEVIS.ZEVISAuthURI", simulator::paths::login);
  set("KODSImageDir", utf8Of(directory_ / "images"));
}

void DemoInstallation::connectGateway(int port) {
  set("ZEVIS.ZEVISServer", "127.0.0.1");
  set("ZEVIS.ZEVISPort", std::to_string(port));
}

void DemoInstallation::execute(const std::string& statement) const {
  Setup setup;
  setup.registryFile = registryFile();
  Component component(setup);
  auto database = Own::of<DBETXTDatabase>(component.runtime());
  if (!database.init("", "", "", "", utf8Of(directory_ / "host.db"), "", "") ||
      database.executeSQL(statement, true) != 0) {
    throw CommandFailure("the host database refuses: " + statement);
  }
}

void DemoInstallation::fillDatabase() const {
  for (const simulator::SamplePerson& person : simulator::samplePersons()) execute(personRow(person));
  for (const simulator::SampleCard& card : simulator::sampleCards())
    execute(cardRow(card, holder(card.personennummer)));
}

void DemoInstallation::writeImages() const {
  Setup setup;
  setup.registryFile = registryFile();
  Component component(setup);
  Runtime& runtime = component.runtime();
  for (const simulator::SamplePerson& person : simulator::samplePersons()) {
    runtime.konfiguration.GetImageDir(person.personennummer);
    const std::string stem = runtime.machine.files.nativePath(runtime.konfiguration.ImageDir);
    fs::create_directories(pathOf(stem).parent_path());
    writeSamplePhoto(stem + ".JP0");
    writeSampleSignature(stem + ".JP1");
  }
}

}  // namespace kartix::host
