#include "common/Text.h"
#include "database/HostFixture.h"
#include "hostdb/Own.h"
#include "support/Certificates.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class Connection : public HostDatabase {
 protected:
  /// The message that an attempt to open with the present configuration shows; empty when it opens.
  std::string openingMessage() {
    const Konfiguration& k = runtime.konfiguration;
    machine.messages.take();
    auto db = Own::of<DBETXTDatabase>(runtime);
    const bool opened = db.init(k.ServerIP, k.ServerPort, k.SysUser, k.SysPass, k.DBName, k.DBUser, k.DBPass);
    const auto messages = machine.messages.take();
    EXPECT_EQ(messages.size(), opened ? 0U : 1U);
    std::string sql = "select 1";
    std::string cursor;
    EXPECT_EQ(db.query(sql, cursor), opened ? 1 : -1);
    if (opened) return {};
    EXPECT_EQ(sql, "select 1");
    EXPECT_EQ(db.executeSQL("commit"), -1);
    EXPECT_EQ(db.Datafield(1), "");
    return messages.empty() ? "" : messages.front();
  }
};

INSTANTIATE_TEST_SUITE_P(Engines, Connection, engines(), engineName);

TEST_P(Connection, EveryFailureToOpenHasItsMessage) {
  const std::string server =
      "Fehler beim Öffnen der Datenbank|DBE Server: IP, Port, Systembenutzer oder Systempasswort falsch.";
  const std::string database =
      "Fehler beim Öffnen der Datenbank|Datenbank: DB-Benutzer, DB-Passwort oder DB-Name falsch.";
  struct Case {
    std::string Konfiguration::*setting;
    std::string value, message, reason;
  };
  const bool file = GetParam() == Engine::sqlite;
  std::vector<Case> cases = {{&Konfiguration::DBName, "", database, file ? "Pfad" : "leer"},
                             {&Konfiguration::DBName, machine.directory / "missing.db", database, "o such file"}};
  if (file) {
    writeBytes(machine.directory / "text.db", std::string(4096, 'x'));
    cases.push_back({&Konfiguration::DBName, machine.directory / "text.db", database, "file is not a database"});
    cases.push_back({&Konfiguration::DBName, machine.directory.path(), database, "Keine Datei"});
    cases.push_back({&Konfiguration::DBName, ":memory:", database, "o such file"});
  } else {
    cases.back().reason = "does not exist";
    cases.push_back({&Konfiguration::ServerPort, "1", server, "refused"});
    cases.push_back({&Konfiguration::ServerIP, "127.0.0.1.invalid", server, "127.0.0.1.invalid"});
    cases.push_back({&Konfiguration::ServerIP, "127.0.0.1,,127.0.0.1", server, "leer"});
    cases.push_back({&Konfiguration::ServerPort, "5432,5433", server, "1 Server, aber 2 Ports"});
    cases.push_back({&Konfiguration::ServerTLS, "verify_full", server, "verify_full"});
    cases.push_back({&Konfiguration::SysUser, "niemand", server, "\"niemand\""});
    cases.push_back({&Konfiguration::SysPass, "falsch", server, "\"argosys\""});
    cases.push_back({&Konfiguration::SysPass, "", server, "password"});
    cases.push_back({&Konfiguration::DBUser, "niemand", database, "\"niemand\""});
    cases.push_back({&Konfiguration::DBPass, "Systempasswort", database, "\"argo\""});
    cases.push_back({&Konfiguration::DBPass, "", database, "password"});
  }
  Konfiguration& k = runtime.konfiguration;
  for (const Case& c : cases) {
    const std::string before = std::exchange(k.*c.setting, c.value);
    EXPECT_EQ(openingMessage(), c.message) << c.value;
    EXPECT_THAT(machine.dbe->failureReason(), HasSubstr(c.reason)) << c.value;
    EXPECT_THAT(machine.dbe->failureReason(), Not(HasSubstr("asswort"))) << c.value;
    k.*c.setting = before;
  }
  EXPECT_EQ(openingMessage(), "");
}

/// Passwords mean nothing to a file.
class ServerConnection : public Connection {};

INSTANTIATE_TEST_SUITE_P(Engines, ServerConnection, testing::Values(Engine::postgres), engineName);

TEST_P(ServerConnection, ApplicationKeyIsNoPartOfThePassword) {
  const Konfiguration& k = runtime.konfiguration;
  const auto open = [&](const std::string& user, const std::string& password, const std::string& appkey) {
    auto db = Own::of<DBETXTDatabase>(runtime);
    if (!db.init(k.ServerIP, k.ServerPort, user, password, k.DBName, k.DBUser, k.DBPass, appkey)) return -1;
    return count("pg_stat_activity where application_name = 'ARGO-Schluessel'");
  };
  EXPECT_EQ(open("argosys", "Systempasswort", "ARGO-Schluessel"), 1);
  EXPECT_EQ(open("argosys", "falsch", "ARGO-Schluessel"), -1);
  EXPECT_EQ(open("halbsys", "a;b", ""), 0);
}

TEST_P(ServerConnection, TlsIsAsWished) {
  Konfiguration& k = runtime.konfiguration;
  const std::string certificate = std::getenv("KARTIX_TEST_POSTGRES_CERTIFICATE");
  TestAuthority other(machine.directory.path());
  struct Case {
    std::string server, mode, authority;
    bool opens, secured;
  };
  for (const Case& c : {Case{"127.0.0.1", "", "", true, true},
                        {"127.0.0.1", "disable", "", true, false},
                        {"127.0.0.1", "require", "", true, true},
                        {"127.0.0.1", "verify-full", certificate, true, true},
                        {"localhost", "verify-full", certificate, false, false},
                        {"localhost", "verify-ca", certificate, true, true},
                        {"127.0.0.1", "verify-ca", other.caFile(), false, false},
                        {"127.0.0.1", "verify-full", "/gone.pem", false, false}}) {
    k.ServerIP = c.server;
    k.ServerTLS = c.mode;
    k.ServerCA = c.authority;
    EXPECT_EQ(openingMessage().empty(), c.opens) << c.server << c.mode << machine.dbe->failureReason();
    if (!c.opens) continue;
    EXPECT_EQ(count("pg_stat_ssl where pid = pg_backend_pid() and ssl"), c.secured ? 1 : 0) << c.mode;
  }
}

TEST_P(ServerConnection, TablesAreMadeOnce) {
  for (const char* table : {"personalien", "fahrerkarte", "bearbeitung"}) execute(std::string("drop table ") + table);
  insertRow("datenaustausch", 16, {});
  EXPECT_THROW(createTables(), std::runtime_error);
  EXPECT_EQ(count("pg_class where relname = 'personalien'"), 0);
  EXPECT_EQ(count("datenaustausch"), 1);
  execute("drop table datenaustausch");
  createTables();
  EXPECT_EQ(count("personalien"), 0);
}

TEST_P(Connection, OneStatementForEachCall) {
  const auto db = open();
  struct Case {
    std::string sql;
    bool good;
  };
  for (const Case& c : {Case{"select 1", true},
                        {"select 1 ; ", true},
                        {"select 1 -- remark", true},
                        {"select 1; select 2", false},
                        {"select 1; delete from personalien", false},
                        {"", false},
                        {"selec 1", false},
                        {"select * from gibtesnicht", false},
                        {std::string("select '\xFC'"), false}}) {
    std::string sql = c.sql;
    std::string cursor;
    EXPECT_EQ(db->query(sql, cursor), c.good ? 1 : -1) << c.sql;
    EXPECT_NE(sql, "") << "the first row, or the reason";
    EXPECT_NE(sql, c.sql);
    EXPECT_EQ(db->Datafield(1), c.good ? "1" : "");
    EXPECT_EQ(db->executeSQL(c.sql) == 0, c.good) << c.sql;
  }
  EXPECT_NE(db->executeSQL("delete from personalien; commit", true), 0);
}

TEST_P(Connection, WorkIsKeptByCommitAlone) {
  const std::string row = "insert into fahrerkarte (lfdnr) values ('";
  {
    const auto db = open();
    EXPECT_EQ(db->executeSQL(row + "1')"), 0);
    EXPECT_EQ(db->executeSQL("insert into gibtesnicht values ('x')", true), -1);
  }
  EXPECT_EQ(count("fahrerkarte"), 0) << "no commit may follow a failed statement";
  {
    const auto db = open();
    EXPECT_EQ(db->executeSQL(row + "2')"), 0);
    EXPECT_NE(db->executeSQL("insert into fahrerkarte (gibtesnicht) values ('x')", true), 0);
    std::string sql = "select nonsense from fahrerkarte";
    std::string cursor;
    EXPECT_LT(db->query(sql, cursor), 0);
    // What failed has not taken the earlier statement along.
    EXPECT_EQ(db->executeSQL("commit"), 0);
    EXPECT_EQ(db->executeSQL(row + "3')"), 0);
    EXPECT_EQ(db->executeSQL("rollback"), 0);
    EXPECT_EQ(db->executeSQL(row + "4')", true), 0);
    db->addDatafield("kein Commit");
    for (int i = 2; i <= 16; ++i) db->addDatafield("");
    EXPECT_EQ(db->addDataset("DATENAUSTAUSCH"), 0);
  }
  EXPECT_THAT(select("select lfdnr from fahrerkarte order by lfdnr", 1),
              ElementsAre(ElementsAre("2"), ElementsAre("4")));
  EXPECT_EQ(count("datenaustausch"), 0);
}

TEST_P(Connection, TextsComeBackAsTheyWere) {
  for (const std::string text :
       {"O'Neil", "D'Angelo", "''", "Müller-Lüdenscheidt", "Đorđević", "Ştefan €", R"(C:\neu\)", R"(\')", "100 %",
        "\"q\"", "a;--b", "$1 $$x$$ :p ?", "𝄞", "zwei\r\nZeilen", "NULL"}) {
    insertRow("datenaustausch", 16, {{1, text}, {2, " "}});
    const auto rows = select(
        "select spalte001 from datenaustausch where spalte001 = '" + DBETXTDatabase::db_prepare(text) + "'", 1);
    EXPECT_THAT(rows, ElementsAre(ElementsAre(text)));
  }
  EXPECT_EQ(count("datenaustausch where spalte002 = ' ' and spalte016 = ' '"), count("datenaustausch"));
  EXPECT_EQ(DBETXTDatabase::db_prepare(""), " ");
  EXPECT_EQ(DBETXTDatabase::db_prepare("a'b"), "a''b");
}

TEST_P(Connection, WideRowsAndLongFields) {
  std::map<int, std::string> values = {{1, "4711"}, {2, std::string(300, 'g')}, {177, "Ende"}};
  std::string umlauts;
  for (int i = 0; i < 5000; ++i) umlauts += "ü";
  values[3] = umlauts;
  insertRow("personalien", 177, values);
  const auto db = open();
  std::string row = "select * from personalien";
  std::string cursor;
  ASSERT_EQ(db->query(row, cursor), 1);
  EXPECT_EQ(db->Datafield(3), text::left(umlauts, 4096));
  EXPECT_EQ(db->Datafield(4), "");
  EXPECT_EQ(db->Datafield(177), "Ende");
  for (const int none : {-1, 0, 178, 400, 401}) {
    EXPECT_EQ(db->Datafield(static_cast<std::int16_t>(none)), "") << none;
  }
  EXPECT_EQ(runtime.global.GetSqlValue(row, 2), std::string(256, 'g'));

  // 400 fields of a row are read, and a row is as long as its buffer.
  std::string wide = "select 1";
  for (int i = 2; i <= 401; ++i) wide += "," + std::to_string(i);
  ASSERT_EQ(db->query(wide, cursor), 1);
  EXPECT_EQ(db->Datafield(400), "400");
  EXPECT_EQ(db->Datafield(401), "");
  std::string longRow = "select familienname";
  for (int i = 0; i < 15; ++i) longRow += ",familienname";
  longRow += ",'last' from personalien";
  ASSERT_EQ(db->query(longRow, cursor), 1);
  EXPECT_EQ(text::length(longRow), 65536U);
  EXPECT_EQ(text::length(db->Datafield(15)), 4096U);
}

TEST_P(Connection, StatementsFillTheirBuffer) {
  const auto db = open();
  constexpr std::size_t around = std::string_view("select length('')").size();
  const auto statement = [](std::size_t length) {
    std::string sql = "select length('";
    for (std::size_t i = around; i < length; ++i) sql += "ß";
    return sql + "')";
  };
  std::string sql = statement(65536);
  std::string cursor;
  EXPECT_EQ(db->query(sql, cursor), 1);
  EXPECT_EQ(db->Datafield(1), std::to_string(65536 - around));
  EXPECT_EQ(db->executeSQL(statement(65536)), 0);
  sql = statement(65537);
  EXPECT_LT(db->query(sql, cursor), 0);
  EXPECT_NE(db->executeSQL(statement(65537)), 0);
}

TEST_P(Connection, InsertTakes400Values) {
  std::string create = "create table breit (";
  for (int i = 1; i <= 400; ++i) create += "c" + std::to_string(i) + " text,";
  create.back() = ')';
  execute(create);
  const auto db = open();
  EXPECT_EQ(db->addDataset("breit", true), -1);
  for (int i = 1; i <= 401; ++i) db->addDatafield(std::to_string(i));
  EXPECT_EQ(db->addDataset("breit", true), 0);
  EXPECT_EQ(count("breit where c1 = '1' and c400 = '400'"), 1);
  db->resetDataset();
  EXPECT_EQ(db->addDataset("breit", true), -1);
}

TEST_P(Connection, CursorsAreReadSideBySide) {
  for (const std::string lfdnr : {"1", "2", "3"}) insertRow("fahrerkarte", 37, {{1, lfdnr}, {2, "4711"}});
  const auto db = open();
  const auto query = [&](const std::string& order, std::string& cursor) {
    std::string row = "select lfdnr from fahrerkarte where personennummer = 4711 order by lfdnr " + order;
    EXPECT_EQ(db->query(row, cursor), 3);
    return row;
  };
  std::string up;
  std::string down;
  std::string row;
  EXPECT_EQ(query("asc", up), "1");
  EXPECT_EQ(query("desc", down), "3");
  EXPECT_NE(up, down);
  EXPECT_LE(up.size(), 10U);
  EXPECT_GE(db->queryNext(row, up), 1);
  EXPECT_EQ(db->Datafield(1), "2");
  EXPECT_GE(db->queryNext(row, down), 1);
  EXPECT_EQ(row, "2");
  db->closeCursor(down);
  EXPECT_LT(db->queryNext(row, down), 0);
  EXPECT_GE(db->queryNext(row, up), 1);
  EXPECT_EQ(row, "3");
  EXPECT_LT(db->queryNext(row, up), 0) << "there is no fourth row";
  EXPECT_EQ(row, "");
  EXPECT_EQ(db->Datafield(1), "");
  row = "select lfdnr from fahrerkarte where lfdnr = 'x'";
  EXPECT_EQ(db->query(row, up), 0);
  EXPECT_EQ(row, "");
  EXPECT_LT(db->queryNext(row, up), 0);
}

}  // namespace
}  // namespace kartix::test
