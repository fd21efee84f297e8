#include <sqlite3.h>

#include <array>
#include <memory>

#include "adapters/sqlite/HostDatabase.h"
#include "bench/Targets.h"
#include "hostdb/Own.h"
#include "kartix/DBETXTDatabase.h"

namespace kartix::bench {
namespace {

constexpr int columns = 177;
/// About as many columns of a row are read as the component reads of a person.
constexpr std::array<std::int16_t, 18> columnsRead = {2,  3,  4,  6,   7,   8,   9,   10,  38,
                                                      40, 86, 87, 127, 129, 150, 160, 167, 177};
constexpr const char* statement = "select * from personalien where personennummer = 4711";
constexpr std::string_view place = "Flensburg-Mürwik";

/// A host database with one person, open both ways.
struct Host : Office {
  Host() {
    adapters::createHostDatabase(file);
    database.init("", "", "", "", file, "", "");
    database.addDatafield("4711");
    for (int i = 1; i < columns; ++i) database.addDatafield(std::string(place));
    database.addDataset("personalien", true);
    sqlite3_open(file.c_str(), &bare);
  }
  ~Host() { sqlite3_close(bare); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;

  std::string file = (directory / "host.db").string();
  DBETXTDatabase database = Own::of<DBETXTDatabase>(component.runtime());
  sqlite3* bare = nullptr;
};

bool own(Host& host) {
  std::string row = statement;
  std::string cursor;
  bool good = host.database.query(row, cursor) == 1;
  host.database.closeCursor(cursor);
  for (const std::int16_t column : columnsRead) good = good && host.database.Datafield(column) == place;
  return good;
}

bool plain(Host& host) {
  sqlite3_stmt* query = nullptr;
  bool good =
      sqlite3_prepare_v2(host.bare, statement, -1, &query, nullptr) == SQLITE_OK && sqlite3_step(query) == SQLITE_ROW;
  for (const std::int16_t column : columnsRead) {
    good = good && std::string(reinterpret_cast<const char*>(sqlite3_column_text(query, column - 1))) == place;
  }
  sqlite3_finalize(query);
  return good;
}

}  // namespace

std::vector<Target> databaseTargets() {
  const auto host = std::make_shared<Host>();
  return {compare(
      "row of a person queried and read", [host] { return own(*host); }, "SQLite", [host] { return plain(*host); },
      2)};
}

}  // namespace kartix::bench
