#include <libpq-fe.h>
#include <unistd.h>

#include <cstdlib>

#include "adapters/dbe/HostTables.h"
#include "scenarios/HostData.h"

namespace kartix::test {
namespace {

using Session = std::unique_ptr<PGconn, decltype(&PQfinish)>;

void execute(const Session& session, const std::string& statement) {
  const std::unique_ptr<PGresult, decltype(&PQclear)> result(PQexec(session.get(), statement.c_str()), PQclear);
  if (PQresultStatus(result.get()) != PGRES_COMMAND_OK) {
    throw BadScenario(statement + ": " + PQerrorMessage(session.get()));
  }
}

/// The database of this process, as the server's administrator.
class Database {
 public:
  explicit Database(const std::string& place) : session_(PQconnectdb(place.c_str()), PQfinish) {
    execute(session_, "create database " + name_);
    const std::string port = PQport(session_.get());
    session_ = Session(PQconnectdb((place + " dbname=" + name_).c_str()), PQfinish);
    settings_ = {{"FS.ServerIP", "127.0.0.1"},
                 {"FS.ServerPort", port},
                 {"FS.ServerTLS", "disable"},
                 {"FS.DBName", name_},
                 {"FS.DBUser", PQuser(session_.get())}};
    execute(session_, "set client_min_messages = error");
    execute(session_, "create role dbeuser login");
  }

  const Json& settings() const { return settings_; }

  void make(const std::vector<std::string>& statements) {
    std::string script = "begin; drop schema public cascade; create schema public;";
    for (const std::string& statement : adapters::dbe::hostTableStatements()) script += statement + ";";
    for (const std::string& statement : statements) script += statement + ";";
    execute(session_, script + "commit");
  }

 private:
  std::string name_ = "scenarios" + std::to_string(getpid());
  Session session_;
  Json settings_;
};

class HostServer : public HostData {
 public:
  explicit HostServer(Database& database) : database_(database) {}

  Json settings() const override { return database_.settings(); }
  void make(const std::vector<std::string>& statements) override { database_.make(statements); }

 private:
  Database& database_;
};

}  // namespace

std::unique_ptr<HostData> hostOnServer() {
  const char* const place = std::getenv("KARTIX_TEST_POSTGRES");
  if (!place) return nullptr;
  static Database database(place);
  return std::make_unique<HostServer>(database);
}

}  // namespace kartix::test
