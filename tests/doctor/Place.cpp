#include "doctor/Place.h"

#include <gtest/gtest.h>
#include <libpq-fe.h>
#include <sqlite3.h>

#include <cstdlib>

#include "adapters/settings/Settings.h"
#include "adapters/sqlite/HostDatabase.h"
#include "common/Scrambling.h"
#include "host/Installation.h"
#include "host/Settings.h"
#include "host/doctor/Doctor.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

using Session = std::unique_ptr<PGconn, decltype(&PQfinish)>;

Reply gateway(const RecordedRequest& request) {
  const auto says = [&](const std::string& text) { return request.body.find(text) != std::string::npos; };
  const auto login = [](const std::string& code) {
    return Reply{answer("<?xml version=\"1.0\"?><ZEVIS-HINWEIS><RETC>" + code +
                        "</RETC><RETT>Antwort</RETT></ZEVIS-HINWEIS>")};
  };
  if (request.head.find(" /anmeldung ") == std::string::npos) return {answer("", "404 Not Found")};
  if (!says("<KENN>kartix</KENN>") || !says("<PASS>geheim01</PASS>"))
    return login(says("geheim05") ? "3005" : "1000");
  return login("0");
}

}  // namespace

Neighbourhood::Neighbourhood()
    : client(authority.issue("client", {.validDays = 400})),
      shortLived(authority.issue("short", {.validDays = 20})),
      expired(authority.issue("old", {.validDays = -2})),
      locked(authority.issue("locked", {.validDays = 400, .phrase = "geheim04"})),
      stranger{} {
  const std::filesystem::path elsewhere = directory / "elsewhere";
  std::filesystem::create_directory(elsewhere);
  const TestAuthority other(elsewhere);
  stranger = other.issue("stranger", {.validDays = 400});
  const auto serve = [&](const std::string& name, const LoopbackServer::Script& script,
                         const std::optional<TlsWishes>& tls) {
    servers_.push_back(std::make_unique<LoopbackServer>(script, tls));
    ports[name] = servers_.back()->port();
  };
  serve("sound", gateway, TlsWishes{authority.issue("server"), authority.caFile()});
  serve("untrusted", gateway, TlsWishes{other.issue("server"), {}});
  serve("wrong name", gateway, TlsWishes{authority.issue("wrong", {.names = "DNS:kba.example"}), {}});
  serve("expired", gateway, TlsWishes{authority.issue("late", {.validDays = -2}), {}});
  serve("plain", gateway, std::nullopt);
  closing_.start([](int, int) {});
  ports["closing"] = closing_.port();

  const Session server(PQconnectdb(std::getenv("KARTIX_TEST_POSTGRES")), PQfinish);
  databasePort = PQport(server.get());
  onServer("create role argosys login password 'geheim02'");
  onServer("create role argo login password 'geheim03'");
  adapters::createHostDatabase(directory / "empty.db");
  onServer("create database vorlage owner argo");
  // As an administrator makes the tables; those that are there stay.
  const std::string create = std::string("printf geheim03 | " KARTIX_COMMAND " db create --server 127.0.0.1 --port ") +
                             databasePort + " --database vorlage --user argo --tls disable >/dev/null 2>&1";
  EXPECT_EQ(std::system(create.c_str()), 0) << create;
  EXPECT_NE(std::system(create.c_str()), 0);
}

void Neighbourhood::onServer(const std::string& statement, const std::string& database) {
  const Session session(
      PQconnectdb((std::string(std::getenv("KARTIX_TEST_POSTGRES")) + " dbname=" + database).c_str()), PQfinish);
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(session.get(), statement.c_str()), PQclear);
  EXPECT_EQ(PQresultStatus(result.get()), PGRES_COMMAND_OK) << statement << ": " << PQerrorMessage(session.get());
}

Place::Place(Neighbourhood& neighbourhood) : around(neighbourhood) {
  std::filesystem::copy_file(around.directory / "empty.db", directory / "host.db");
  std::filesystem::create_directories(directory / "images/00/000/00000");
  setIni("[ZKR]\r\nZKRNeu=1\r\n");
  writeBytes(directory / "orders",
             "begin\t0123456789abcdef\t2026-03-09T07:05:04\tBestellung\tautomation\t4711\t1\t4711/1\tMeier\n"
             "end\t0123456789abcdef\t2026-03-09T07:05:05\taccepted\t0\n");
  for (const auto& [setting, value] : std::initializer_list<std::pair<const char*, std::string>>{
           {"InfoDatei", file("kartix.ini")},
           {"KODSImageDir", file("images")},
           {"FS.DBName", file("host.db")},
           {"ZKR.Bestellbuch", file("orders")},
           {"ZKR.KENZA", "17"},
           {"ZKR.ZPPER", "Amt"},
           {"ZKR.AnfrageURI", "/anfrage"},
           {"ZKR.BestellURI", "/bestellung"},
           {"ZKR.MitteilungsURI", "https://kba.example/mitteilung"},
           {"ZKR.BehoerdeVorderseite", "Landratsamt"},
           {"ZKR.BehoerdeRueckseite", "Landratsamt, Markt 1"},
           {"ZKR.ZEVISUserName", "kartix"},
           {"ZKR.ZEVISPass", "geheim01"},
           {"ZEVIS.ZEVISServer", "localhost"},
           {"ZEVIS.ZEVISPort", around.ports["sound"]},
           {"ZEVIS.ZEVISAuthURI", "/anmeldung"},
           {"ZEVIS.GATEWAY", "1"},
           {"ZEVIS.GATEWAYCert", around.client.certificate},
           {"ZEVIS.GATEWAYPkey", around.client.key},
           {"ZFER.DebugFile", file("trace.txt")}}) {
    set(setting, value);
  }
}

void Place::set(const std::string& setting, const std::string& value) {
  const host::Setting& entry = host::findSetting(setting);
  host::storeValue(*adapters::makeRegFile(directory / "registry.reg"), entry,
                   entry.secret() ? CryptLong(value) : value);
}

void Place::setIni(const std::string& text) { writeBytes(directory / "kartix.ini", text); }

void Place::onFile(const std::string& statements) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(file("host.db").c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

void Place::moveToServer() {
  static int number = 0;
  database_ = "host" + std::to_string(++number);
  around.onServer("create database " + database_ + " template vorlage owner argo");
  for (const auto& [setting, value] :
       std::initializer_list<std::pair<const char*, std::string>>{{"FS.ServerIP", "127.0.0.1"},
                                                                  {"FS.ServerPort", around.databasePort},
                                                                  {"FS.SysUser", "argosys"},
                                                                  {"FS.SysPass", "geheim02"},
                                                                  {"FS.DBName", database_},
                                                                  {"FS.DBUser", "argo"},
                                                                  {"FS.DBPass", "geheim03"}}) {
    set(setting, value);
  }
}

void Place::block(const std::string& name) const {
  std::filesystem::create_directory(directory / ("." + name + ".new"));
}

host::Findings Place::examine() {
  host::Installation installation(directory / "registry.reg", around.authority.caFile(), &classes);
  return host::examine(installation, true);
}

}  // namespace kartix::test
