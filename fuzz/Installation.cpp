#include "Installation.h"

#include <sqlite3.h>

#include "adapters/files/Files.h"
#include "adapters/sqlite/HostDatabase.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix::fuzz {
namespace {

constexpr const char* hostRows =
    "insert into personalien (personennummer, familienname, vorname, geburtsdatum) values"
    " (4711, 'Großmann', 'Jörg', '19700203'), (4712, 'Andere', 'Eva', '19710203');"
    "insert into fahrerkarte (personennummer, lfdnr, vorgangschl, kartennr, abgabestatus) values"
    " (4711, '1', 'EV', 'DF01', 'verloren'), (4711, '3', 'ST', 'DF03', ''), (4712, '1', 'EV', 'DF04', '');"
    "insert into bearbeitung (personennummer, sonst1, datum01) values"
    " (4711, 'DF01', '20140101'), (4711, 'DF03', '20140102'), (4712, 'DF01', '20140103')";

/// The database and the folder of pictures as they are before each run.
std::string makeFresh() {
  const auto pictures = directory() / "bilder/00/000/04500";
  std::filesystem::create_directories(pictures);
  for (const char* const kind : {".JP0", ".JP1"}) test::writeBytes(pictures / "0000004711" += kind, "picture");
  const std::string file = directory() / "fresh.db";
  adapters::createHostDatabase(file);
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  expect(sqlite3_exec(database, hostRows, nullptr, nullptr, nullptr) == SQLITE_OK, "there can be rows");
  sqlite3_close(database);
  return test::readBytes(file);
}

struct Picture : platform::Image {
  explicit Picture(bool isPhoto) : photo(isPhoto) {}
  int width() const override { return photo ? 368 : 740; }
  int height() const override { return photo ? 490 : 168; }
  bool enlargeCanvas(int, int, int, int, std::uint32_t) override { return true; }
  bool resize(int, int) override { return true; }
  void setResolution(int, int) override {}
  bool save(const std::string& file) override { return test::writeBytes(file, "picture"), true; }
  bool photo;
};

}  // namespace

const test::TempDir& directory() {
  static const test::TempDir place;
  return place;
}

std::string databaseFile() { return directory() / "host.db"; }
std::string bookFile() { return directory() / "book.txt"; }

std::vector<BookEntry> bookEntries() {
  const auto files = adapters::makeFiles();
  test::StandingClock clock;
  std::vector<BookEntry> entries;
  OrderBook(*files, clock, bookFile()).read(entries);
  return entries;
}

std::map<std::string, std::string> installed() {
  static const std::string fresh = makeFresh();
  test::writeBytes(databaseFile(), fresh);
  std::filesystem::remove(bookFile());
  return {{"FS.DBName", databaseFile()},
          {"KODSImageDir", directory() / "bilder"},
          {"ZKR.Bestellbuch", bookFile()},
          {"ZKR.AnfrageURI", "/anfrage"},
          {"ZKR.BestellURI", "/bestellung"},
          {"ZKR.MitteilungsURI", "/mitteilung"},
          {"ZKR.ZEVISPass", "geheim1"},
          {"ZKR.AllowPassChange", "1"},
          {"ZEVIS.ZEVISAuthURI", "/anmeldung"},
          {"ZEVIS.ZEVISServer", "gateway"},
          {"ZEVIS.ZEVISPort", "80"}};
}

void setField(const std::string& column, const std::string& value) {
  const auto dot = column.find('.');
  const std::string text =
      "update " + column.substr(0, dot) + " set " + column.substr(dot + 1) + " = ? where personennummer = 4711";
  sqlite3* database = nullptr;
  sqlite3_open(databaseFile().c_str(), &database);
  sqlite3_stmt* statement = nullptr;
  sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr);
  sqlite3_bind_text(statement, 1, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
  expect(sqlite3_step(statement) == SQLITE_DONE, "a field can be set", column);
  sqlite3_finalize(statement);
  sqlite3_close(database);
}

std::unique_ptr<platform::Image> Pictures::load(const std::string& file) {
  return std::make_unique<Picture>(file.ends_with(".JP0"));
}

}  // namespace kartix::fuzz
