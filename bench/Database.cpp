#include <libpq-fe.h>
#include <sqlite3.h>

#include <array>
#include <cstdlib>
#include <memory>

#include "adapters/dbe/HostTables.h"
#include "adapters/postgres/Postgres.h"
#include "adapters/sqlite/HostDatabase.h"
#include "bench/Targets.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"
#include "hostdb/Session.h"
#include "kartix/DBETXTDatabase.h"
#include "platform/DbeLibrary.h"
#include "runtime/Runtime.h"

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

/// A person with many card records.
struct Driver : Office {
  Driver(int records, const std::string& server) {
    Runtime& runtime = component.runtime();
    Konfiguration& k = runtime.konfiguration;
    k.readOnce();
    k.DBName = (directory / "host.db").string();
    if (!server.empty()) {
      useServer(k, server, "karten" + std::to_string(records));
    } else {
      adapters::createHostDatabase(k.DBName);
    }
    auto database = Own::of<DBETXTDatabase>(runtime);
    openConfigured(runtime, database);
    database.executeSQL("insert into personalien (personennummer) values (4711)");
    for (int i = 1; i <= records; ++i) {
      database.executeSQL("insert into fahrerkarte (personennummer, lfdnr, kartennr, vorgangschl) values (4711, '" +
                          std::to_string(i) + "', 'DF" + std::to_string(i) + "', 'NA')");
    }
    database.executeSQL("commit");
  }

  static void useServer(Konfiguration& k, const std::string& server, const std::string& name) {
    const std::unique_ptr<PGconn, decltype(&PQfinish)> session(PQconnectdb(server.c_str()), PQfinish);
    PQclear(PQexec(session.get(), ("drop database if exists " + name).c_str()));
    PQclear(PQexec(session.get(), ("create database " + name).c_str()));
    k.ServerIP = PQhost(session.get());
    k.ServerPort = PQport(session.get());
    k.SysUser = k.DBUser = PQuser(session.get());
    k.SysPass = k.DBPass = PQpass(session.get());
    k.DBName = name;
    adapters::dbe::createHostTables(*adapters::makePostgresDbe(),
                                    {k.ServerIP, k.ServerPort, k.SysUser, k.SysPass, k.DBName, k.DBUser, k.DBPass});
  }

  bool load() {
    Session session(component.runtime());
    session.begin("4711");
    session.CurrentLfdnr = "1";
    return ARGOInterface(component.runtime(), session).Load();
  }
};

/// Twenty times as many records take twenty times as long: what a load costs beside its records is paid by a promise
/// of a third more.
Target linearLoad(const std::string& engine, const std::string& server) {
  constexpr int few = 500;
  constexpr int many = 10'000;
  const auto rounds = [&](int records) {
    const auto driver = later<Driver>(records, server);
    return add(
        engine + "/person with " + std::to_string(records) + " card records loaded",
        [driver] { return driver().load(); }, records);
  };
  return {
      "card records loaded, " + std::to_string(many) + " against " + std::to_string(few) + " of a person, " + engine,
      {rounds(many)},
      {rounds(few)},
      1.3};
}

}  // namespace

std::vector<Target> databaseTargets() {
  const auto host = later<Host>();
  std::vector<Target> targets = {linearLoad("SQLite", "")};
  if (const char* const server = std::getenv("KARTIX_TEST_POSTGRES")) {
    targets.push_back(linearLoad("server", server));
    // What plays a scenario would take it for its own.
    ::unsetenv("KARTIX_TEST_POSTGRES");
  }
  targets.push_back(compare(
      "row of a person queried and read", [host] { return own(host()); }, "SQLite", [host] { return plain(host()); },
      2));
  return targets;
}

}  // namespace kartix::bench
