#include "adapters/postgres/Postgres.h"

#include <libpq-fe.h>
#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <string_view>

#include "adapters/dbe/Engine.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

using Clock = std::chrono::steady_clock;

/// The server ends a statement after a minute. Somewhat later the client stops waiting for a server that says
/// nothing.
constexpr const char* statementLimit = "set statement_timeout = 60000";
constexpr std::chrono::seconds answerTime{70};

struct CloseSession {
  void operator()(PGconn* session) const { PQfinish(session); }
};
struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using Session = std::unique_ptr<PGconn, CloseSession>;
using Result = std::unique_ptr<PGresult, ClearResult>;

struct Account {
  std::string database;
  std::string user;
  std::string password;
};

/// Password and application key of "password;key". Without a key everything is password.
std::pair<std::string, std::string> splitPassword(const std::string& password) {
  const auto separator = password.rfind(';');
  if (separator == std::string::npos) return {password, {}};
  return {password.substr(0, separator), password.substr(separator + 1)};
}

Session logIn(const dbe::Login& where, const Account& account, const std::string& applicationKey) {
  // The client library would put values of its own in place of empty ones.
  if (account.database.empty() || account.user.empty() || where.server.empty()) return nullptr;
  const std::string application = applicationKey.empty() ? "kartix" : applicationKey;
  struct Parameter {
    const char* name;
    const char* value;
  };
  const std::array parameters = {
      Parameter{"host", where.server.c_str()},
      Parameter{"port", where.port.c_str()},
      Parameter{"dbname", account.database.c_str()},
      Parameter{"user", account.user.c_str()},
      Parameter{"password", account.password.c_str()},
      Parameter{"application_name", application.c_str()},
      Parameter{"client_encoding", "UTF8"},
      Parameter{"connect_timeout", "10"},
      Parameter{"keepalives_idle", "10"},
      Parameter{"keepalives_interval", "5"},
      Parameter{"keepalives_count", "3"},
      Parameter{"tcp_user_timeout", "30000"},
  };
  std::array<const char*, parameters.size() + 1> names{};
  std::array<const char*, parameters.size() + 1> values{};
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    names.at(i) = parameters.at(i).name;
    values.at(i) = parameters.at(i).value;
  }
  Session session(PQconnectdbParams(names.data(), values.data(), 0));
  const PQnoticeProcessor silent = [](void*, const char*) {};
  if (session) PQsetNoticeProcessor(session.get(), silent, nullptr);
  return session;
}

bool connected(const Session& session) { return session && PQstatus(session.get()) == CONNECTION_OK; }

std::string trimmedMessage(std::string message) {
  while (message.ends_with('\n')) message.pop_back();
  return message;
}

/// Why there is no session.
std::string refusal(const Session& session) {
  return session ? trimmedMessage(PQerrorMessage(session.get()))
                 : "Server, Datenbank oder Benutzer ist nicht genannt";
}

class PostgresConnection : public dbe::Connection {
 public:
  PostgresConnection(dbe::Login where, std::string applicationKey, Session session)
      : where_(std::move(where)), applicationKey_(std::move(applicationKey)), session_(std::move(session)) {}

  std::optional<std::string> open(const std::string& name, const std::string& user,
                                  const std::string& password) override {
    Session session = logIn(where_, {name, user, password}, applicationKey_);
    if (!connected(session)) return refusal(session);
    // The system user's session has done its work.
    session_ = std::move(session);
    // With this setting a backslash in a quoted value is a backslash and cannot hide the closing quote.
    if (auto error = command("set standard_conforming_strings = on")) return error;
    // A server that does not know the limit works without it.
    command(statementLimit);
    return begin();
  }

  std::optional<std::string> run(const std::string& statement, dbe::RowSet& rows) override {
    if (auto error = begin()) return error;
    // A failed statement takes the whole transaction along, so one that holds unwritten work is secured first.
    const bool secured = written_ && !endsTransaction(statement);
    if (secured) {
      if (auto error = command("savepoint statement")) return error;
    }
    bool onlyRead = false;
    auto error = exchange(statement, &rows, onlyRead);
    if (!connected(session_)) return error ? error : "Verbindung zum Datenbankserver verloren";
    if (PQtransactionStatus(session_.get()) == PQTRANS_INERROR) {
      if (command(secured ? "rollback to savepoint statement" : "rollback")) session_.reset();
    } else if (PQtransactionStatus(session_.get()) == PQTRANS_INTRANS) {
      if (secured) command("release savepoint statement");
      written_ = written_ || !onlyRead;
    }
    if (auto next = begin(); next && !error) return next;
    return error;
  }

 private:
  static bool endsTransaction(std::string_view statement) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const auto start = std::min(statement.find_first_of(letters), statement.size());
    const std::string_view word = statement.substr(start, statement.find_first_not_of(letters, start) - start);
    return text::equalNoCase(word, "commit") || text::equalNoCase(word, "rollback") || text::equalNoCase(word, "end");
  }

  std::optional<std::string> begin() {
    if (!connected(session_)) return "Keine Verbindung zum Datenbankserver";
    if (PQtransactionStatus(session_.get()) != PQTRANS_IDLE) return std::nullopt;
    written_ = false;
    return command("begin");
  }

  std::optional<std::string> command(const char* text) {
    bool onlyRead = false;
    return exchange(text, nullptr, onlyRead);
  }

  /// Sends one statement and takes its whole answer. The extended protocol refuses a second statement.
  std::optional<std::string> exchange(const std::string& statement, dbe::RowSet* rows, bool& onlyRead) {
    try {
      return exchangeWhole(statement, rows, onlyRead);
    } catch (...) {
      // An answer that is left half taken would be taken for the next one's.
      session_.reset();
      throw;
    }
  }

  std::optional<std::string> exchangeWhole(const std::string& statement, dbe::RowSet* rows, bool& onlyRead) {
    if (PQsendQueryParams(session_.get(), statement.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0) == 0) {
      return trimmedMessage(PQerrorMessage(session_.get()));
    }
    PQsetSingleRowMode(session_.get());
    const auto deadline = Clock::now() + answerTime;
    std::optional<std::string> error;
    for (;;) {
      if (!answerArrives(deadline)) {
        session_.reset();
        return "Der Datenbankserver antwortet nicht";
      }
      const Result result(PQgetResult(session_.get()));
      if (!result) return error;
      switch (PQresultStatus(result.get())) {
        case PGRES_SINGLE_TUPLE:
          if (!error && rows && !take(result.get(), *rows)) {
            cancel();
            error = "Das Ergebnis ist zu groß";
          }
          break;
        case PGRES_TUPLES_OK:
        case PGRES_COMMAND_OK:
          onlyRead = std::string_view(PQcmdStatus(result.get())).starts_with("SELECT");
          break;
        case PGRES_EMPTY_QUERY:
          error = "Leere Anweisung";
          break;
        case PGRES_FATAL_ERROR:
          if (!error) error = trimmedMessage(PQresultErrorMessage(result.get()));
          break;
        default:
          // A copy between server and client has no place here, and only closing the session ends it.
          session_.reset();
          return "Anweisung wird nicht unterstützt";
      }
    }
  }

  bool answerArrives(Clock::time_point deadline) {
    while (PQisBusy(session_.get()) != 0) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
      if (left <= 0) return false;
      pollfd waiting{PQsocket(session_.get()), POLLIN, 0};
      if (poll(&waiting, 1, static_cast<int>(left)) > 0 && PQconsumeInput(session_.get()) == 0) return true;
    }
    return true;
  }

  void cancel() {
    PGcancel* const request = PQgetCancel(session_.get());
    std::array<char, 256> ignored{};
    PQcancel(request, ignored.data(), static_cast<int>(ignored.size()));
    PQfreeCancel(request);
  }

  static bool take(const PGresult* result, dbe::RowSet& rows) {
    std::vector<std::string_view> fields(static_cast<std::size_t>(PQnfields(result)));
    for (int i = 0; i < PQnfields(result); ++i) {
      fields[static_cast<std::size_t>(i)] = {PQgetvalue(result, 0, i),
                                             static_cast<std::size_t>(PQgetlength(result, 0, i))};
    }
    return rows.add(fields);
  }

  dbe::Login where_;
  std::string applicationKey_;
  Session session_;
  bool written_ = false;
};

dbe::Attempt connect(const dbe::Login& login) {
  constexpr const char* maintenance = "postgres";
  auto [password, key] = splitPassword(login.password);
  Session session = logIn(login, {maintenance, login.user, password}, key);
  if (!connected(session) && session && PQconnectionUsedPassword(session.get()) != 0 && password != login.password) {
    // The password itself may hold the separator.
    key.clear();
    session = logIn(login, {maintenance, login.user, login.password}, key);
  }
  if (!connected(session)) return {nullptr, refusal(session)};
  return {std::make_unique<PostgresConnection>(login, key, std::move(session))};
}

}  // namespace

std::unique_ptr<platform::DbeLibrary> makePostgresDbe() { return dbe::makeClient(connect); }

}  // namespace kartix::adapters
