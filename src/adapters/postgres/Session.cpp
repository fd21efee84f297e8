#include "adapters/postgres/Session.h"

#include <array>

#include "adapters/postgres/Servers.h"

namespace kartix::adapters::postgres {
namespace {

/// Seconds that a server has to answer. One of several is soon passed over.
constexpr const char* patience = "10";
constexpr const char* patienceWithOneOfSeveral = "5";

std::string trimmed(std::string message) {
  while (message.ends_with('\n')) message.pop_back();
  return message;
}

Session connectTo(const Servers& servers, const dbe::Login& where, const Account& account, const char* application) {
  const std::string names = servers.names();
  const std::string ports = servers.ports();
  struct Parameter {
    const char* name;
    const char* value;
  };
  // An empty value is none: the client library has one of its own in its place.
  const std::array parameters = {
      Parameter{"host", names.c_str()},
      Parameter{"port", ports.c_str()},
      Parameter{"dbname", account.database.c_str()},
      Parameter{"user", account.user.c_str()},
      Parameter{"password", account.password.c_str()},
      Parameter{"application_name", application},
      Parameter{"client_encoding", "UTF8"},
      Parameter{"target_session_attrs", "read-write"},
      Parameter{"sslmode", where.security.mode.empty() ? "prefer" : where.security.mode.c_str()},
      Parameter{"sslrootcert", where.security.rootCertificate.c_str()},
      Parameter{"connect_timeout", servers.size() > 1 ? patienceWithOneOfSeveral : patience},
      Parameter{"keepalives_idle", "10"},
      Parameter{"keepalives_interval", "5"},
      Parameter{"keepalives_count", "3"},
      Parameter{"tcp_user_timeout", "30000"},
  };
  std::array<const char*, parameters.size() + 1> keys{};
  std::array<const char*, parameters.size() + 1> values{};
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    keys.at(i) = parameters.at(i).name;
    values.at(i) = parameters.at(i).value;
  }
  return Session(PQconnectdbParams(keys.data(), values.data(), 0));
}

}  // namespace

Session logIn(const dbe::Login& where, const Account& account, const std::string& applicationKey,
              const LastServer& lastServer, dbe::Failure& failure) {
  Servers servers(where.server, where.port);
  if (account.database.empty() || account.user.empty()) {
    failure = {"Name der Datenbank oder des Benutzers ist leer"};
    return nullptr;
  }
  if (!servers.trouble().empty()) {
    failure = {servers.trouble()};
    return nullptr;
  }
  servers.prefer(*lastServer);
  Session session = connectTo(servers, where, account, applicationKey.empty() ? "kartix" : applicationKey.c_str());
  if (!connected(session)) {
    failure = failureOf(session.get());
    return session;
  }
  *lastServer = {PQhost(session.get()), PQport(session.get())};
  const PQnoticeProcessor silent = [](void*, const char*) {};
  PQsetNoticeProcessor(session.get(), silent, nullptr);
  return session;
}

dbe::Failure failureOf(PGconn* session) { return {trimmed(PQerrorMessage(session))}; }

dbe::Failure failureOf(const PGresult* result) {
  dbe::Failure failure = {trimmed(PQresultErrorMessage(result))};
  const char* const primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  const char* const state = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  if (primary) failure.reason = std::string(primary) + (state ? " (" + std::string(state) + ")" : "");
  return failure;
}

}  // namespace kartix::adapters::postgres
