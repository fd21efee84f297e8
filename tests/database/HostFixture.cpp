#include "database/HostFixture.h"

#include <libpq-fe.h>

#include <cstdlib>

#include "adapters/dbe/DbeChooser.h"
#include "adapters/dbe/HostTables.h"
#include "adapters/postgres/Postgres.h"
#include "adapters/sqlite/HostDatabase.h"
#include "adapters/sqlite/Sqlite.h"
#include "common/Scrambling.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"

namespace kartix::test {
namespace {

/// The server that `with-postgres` has started, as its administrator.
class Server {
 public:
  Server() : session_(PQconnectdb(std::getenv("KARTIX_TEST_POSTGRES")), PQfinish) {
    execute("set client_min_messages = error");
    execute("create role argosys login password 'Systempasswort'");
    execute("create role argo login password 'Datenbank-Passwort'");
    execute("create role halbsys login password 'a;b'");
  }

  std::string port() const { return PQport(session_.get()); }

  void execute(const std::string& statement) {
    const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(session_.get(), statement.c_str()), PQclear);
    EXPECT_EQ(PQresultStatus(result.get()), PGRES_COMMAND_OK) << statement << ": " << PQerrorMessage(session_.get());
  }

 private:
  std::unique_ptr<PGconn, decltype(&PQfinish)> session_;
};

Server& server() {
  static Server running;
  return running;
}

}  // namespace

HostDatabase::HostDatabase()
    : machine(adapters::makeDbeChooser(adapters::makeSqliteDbe(), adapters::makePostgresDbe())) {
  // Nobody calls Konfiguration::init: the first use reads the settings, whatever an init would have to tell.
  store("ZKR", "Testsystem", "1");
  store("ZEVIS", "GATEWAY", "1");
  if (GetParam() == Engine::sqlite) {
    const std::string file = machine.directory / "host.db";
    store("FS", "DBName", file);
    adapters::createHostDatabase(file);
  } else {
    static int number = 0;
    database_ = "host" + std::to_string(++number);
    server().execute("create database " + database_ + " owner argo");
    store("FS", "ServerIP", "127.0.0.1");
    store("FS", "ServerPort", server().port());
    store("FS", "ServerTLS", "disable");  // which takes long
    store("FS", "SysUser", "argosys");
    store("FS", "SysPass", CryptLong("Systempasswort"));
    store("FS", "DBName", database_);
    store("FS", "DBUser", "argo");
    store("FS", "DBPass", CryptLong("Datenbank-Passwort"));
    createTables();
  }
  open();
  EXPECT_EQ(machine.messages.take(), std::vector<std::string>());
  runtime.ClerkName = "Ümit Größer-Sachbearbeiter";
  session.begin("4711");
}

void HostDatabase::createTables() {
  const Konfiguration& k = runtime.konfiguration;
  runtime.konfiguration.readOnce();
  adapters::dbe::createHostTables(*machine.dbe,
                                  {k.ServerIP, k.ServerPort, k.SysUser, k.SysPass, k.DBName, k.DBUser, k.DBPass});
}

void HostDatabase::store(const std::string& section, const std::string& name, const std::string& value) {
  ASSERT_TRUE(machine.registry->RegSetValueEx(std::string(productKey) + section, name, value));
}

HostDatabase::~HostDatabase() {
  if (!database_.empty()) server().execute("drop database " + database_);
}

std::unique_ptr<DBETXTDatabase> HostDatabase::open() {
  auto db = Own::newOf<DBETXTDatabase>(runtime);
  EXPECT_TRUE(openConfigured(runtime, *db));
  return db;
}

void HostDatabase::execute(const std::string& statement) {
  ASSERT_EQ(open()->executeSQL(statement, true), 0) << statement;
}

void HostDatabase::insertRow(const std::string& table, int columns, const std::map<int, std::string>& values) {
  const auto db = open();
  for (int i = 1; i <= columns; ++i) {
    const auto value = values.find(i);
    db->addDatafield(value == values.end() ? std::string() : value->second);
  }
  ASSERT_EQ(db->addDataset(table, true), 0);
}

int HostDatabase::count(const std::string& from) {
  return std::stoi(select("select count(*) from " + from, 1)[0][0]);
}

std::vector<std::vector<std::string>> HostDatabase::select(const std::string& sql, int columns) {
  const auto db = open();
  std::string row = sql;
  std::string cursor;
  std::vector<std::vector<std::string>> rows;
  std::int32_t left = db->query(row, cursor);
  EXPECT_GE(left, 0) << sql << ": " << row;
  for (; left > 0; --left) {
    auto& fields = rows.emplace_back();
    for (int i = 1; i <= columns; ++i) fields.push_back(db->Datafield(static_cast<std::int16_t>(i)));
    db->queryNext(row, cursor);
  }
  return rows;
}

}  // namespace kartix::test
