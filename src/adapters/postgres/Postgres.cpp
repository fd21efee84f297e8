#include "adapters/postgres/Postgres.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <initializer_list>
#include <string_view>
#include <thread>

#include "adapters/dbe/Engine.h"
#include "adapters/postgres/Session.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

using dbe::Failure;
using postgres::connected;
using postgres::failureOf;
using postgres::LastServer;
using postgres::logIn;
using postgres::Result;
using postgres::Session;
using Clock = std::chrono::steady_clock;

/// The server ends a statement after a minute. Somewhat later the client stops waiting for a server that says
/// nothing.
constexpr const char* statementLimit = "set statement_timeout = 60000";
constexpr std::chrono::seconds answerTime{70};
constexpr std::chrono::seconds partingTime{2};

/// How often a server is looked for after the connection was lost during a commit.
constexpr std::chrono::milliseconds settlePause{200};

/// The running transaction, when it has written anything, and the life of the server that it runs in: a server that
/// starts anew after a crash, and one that takes over from another, may give numbers again that were given before.
constexpr const char* markStatement =
    "select txid_current_if_assigned(), pg_walfile_name(pg_current_wal_insert_lsn()),"
    " (select extract(epoch from stats_reset) from pg_stat_bgwriter)";
constexpr std::size_t timelineLength = 8;  ///< the name of a log file begins with it

enum class Fate { written, notWritten, unknown };

/// What tells a transaction from all others; empty where the server cannot say.
struct Mark {
  std::string transaction;
  std::string life;
};

/// Password and application key of "password;key". Without a key everything is password.
std::pair<std::string, std::string> splitPassword(const std::string& password) {
  const auto separator = password.rfind(';');
  if (separator == std::string::npos) return {password, {}};
  return {password.substr(0, separator), password.substr(separator + 1)};
}

class PostgresConnection : public dbe::Connection {
 public:
  PostgresConnection(dbe::Login where, std::string applicationKey, LastServer lastServer,
                     std::chrono::seconds settleTime, Session session)
      : settleTime_(settleTime),
        where_(std::move(where)),
        applicationKey_(std::move(applicationKey)),
        lastServer_(std::move(lastServer)),
        session_(std::move(session)) {}

  /// A pooler hands a session on that is left in order, and ends any other.
  ~PostgresConnection() override {
    if (!connected(session_) || PQtransactionStatus(session_.get()) == PQTRANS_IDLE) return;
    try {
      answerTime_ = partingTime;
      command("rollback");
    } catch (const std::exception&) {
      // The server rolls back what it hears no more of.
    }
  }

  std::optional<Failure> open(const std::string& name, const std::string& user,
                              const std::string& password) override {
    account_ = {name, user, password};
    if (auto failure = logInAsUser()) return failure;
    marks_ = !markOf().life.empty();
    return std::nullopt;
  }

  std::optional<Failure> run(const std::string& statement, dbe::RowSet& rows) override {
    if (auto error = begin()) return error;
    // A failed statement takes the whole transaction along, so one that holds unwritten work is secured first.
    const bool secured = written_ && !ends(statement, {"commit", "rollback", "end"});
    if (secured) {
      if (auto error = command("savepoint statement")) return error;
    }
    const bool commits = written_ && ends(statement, {"commit", "end"});
    const Mark mark = commits ? markOf() : Mark();
    if (auto error = stillSound()) return error;
    bool onlyRead = false;
    auto error = exchange(statement, &rows, onlyRead);
    if (!connected(session_) && commits) return error ? settle(mark, *error) : std::nullopt;
    if (!connected(session_)) return error ? error : Failure{"Verbindung zum Datenbankserver verloren"};
    if (PQtransactionStatus(session_.get()) == PQTRANS_INERROR) {
      if (command(secured ? "rollback to savepoint statement" : "rollback")) session_.reset();
    } else if (PQtransactionStatus(session_.get()) == PQTRANS_INTRANS) {
      if (secured) command("release savepoint statement");
      written_ = written_ || !onlyRead;
    }
    return error;
  }

 private:
  /// True for a statement that begins with one of `words`.
  static bool ends(std::string_view statement, std::initializer_list<std::string_view> words) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const auto start = std::min(statement.find_first_of(letters), statement.size());
    const std::string_view word = statement.substr(start, statement.find_first_not_of(letters, start) - start);
    return std::any_of(words.begin(), words.end(),
                       [&](std::string_view each) { return text::equalNoCase(word, each); });
  }

  std::optional<Failure> logInAsUser() {
    Failure failure;
    Session session = logIn(where_, account_, applicationKey_, lastServer_, failure);
    if (!connected(session)) return failure;
    // The system user's session has done its work.
    session_ = std::move(session);
    // With this setting a backslash in a quoted value is a backslash and cannot hide the closing quote.
    if (auto refused = command("set standard_conforming_strings = on")) return refused;
    // A server that does not know the limit works without it.
    command(statementLimit);
    return std::nullopt;
  }

  /// Why the transaction cannot go on.
  std::optional<Failure> stillSound() {
    if (!connected(session_)) return Failure{"Verbindung zum Datenbankserver verloren"};
    if (PQtransactionStatus(session_.get()) != PQTRANS_INERROR) return std::nullopt;
    command("rollback");
    return Failure{"Transaktion abgebrochen"};
  }

  Mark markOf() {
    dbe::RowSet rows;
    bool onlyRead = false;
    if (!marks_ || exchange(markStatement, &rows, onlyRead) || rows.size() != 1) return {};
    return {dbe::fieldOf(rows[0], 1, dbe::fieldSize),
            dbe::fieldOf(rows[0], 2, timelineLength) + " " + dbe::fieldOf(rows[0], 3, dbe::fieldSize)};
  }

  /// Finds out whether the transaction was written whose commit has not been answered, at whichever server accepts
  /// writes by then. Nothing when it was; otherwise `lost`, the failure of the commit.
  std::optional<Failure> settle(const Mark& mark, Failure lost) {
    // What has no number has written nothing.
    if (mark.transaction.empty() && marks_) return lost;
    const auto deadline = Clock::now() + settleTime_;
    lost.outcomeUnknown = true;
    while (marks_ && Clock::now() < deadline) {
      std::optional<Fate> fate;
      if (!logInAsUser()) fate = fateOf(mark);
      if (!fate) {
        std::this_thread::sleep_for(settlePause);
        continue;
      }
      if (*fate == Fate::written) return std::nullopt;
      lost.outcomeUnknown = *fate == Fate::unknown;
      return lost;
    }
    return lost;
  }

  /// Nothing as long as it is open.
  std::optional<Fate> fateOf(const Mark& mark) {
    dbe::RowSet rows;
    bool onlyRead = false;
    const auto failure = exchange("select txid_status(" + mark.transaction + ")", &rows, onlyRead);
    // A server that has never given this number has not got the transaction.
    if (failure && failure->reason.ends_with("(22023)")) return Fate::notWritten;
    if (failure || rows.size() != 1 || rows[0] == "in progress") return std::nullopt;
    if (rows[0] == "aborted") return Fate::notWritten;
    // In another life of the server the number may be another's.
    return rows[0] == "committed" && markOf().life == mark.life ? Fate::written : Fate::unknown;
  }

  /// A transaction is open from the first statement on. Opened any earlier, it would only keep a pooler from handing
  /// the session on.
  std::optional<Failure> begin() {
    if (!connected(session_)) return Failure{"Keine Verbindung zum Datenbankserver"};
    if (PQtransactionStatus(session_.get()) != PQTRANS_IDLE) return std::nullopt;
    written_ = false;
    return command("begin");
  }

  std::optional<Failure> command(const char* text) {
    bool onlyRead = false;
    return exchange(text, nullptr, onlyRead);
  }

  /// Sends one statement and takes its whole answer. The extended protocol refuses a second statement.
  std::optional<Failure> exchange(const std::string& statement, dbe::RowSet* rows, bool& onlyRead) {
    try {
      return exchangeWhole(statement, rows, onlyRead);
    } catch (...) {
      // An answer that is left half taken would be taken for the next one's.
      session_.reset();
      throw;
    }
  }

  std::optional<Failure> exchangeWhole(const std::string& statement, dbe::RowSet* rows, bool& onlyRead) {
    if (PQsendQueryParams(session_.get(), statement.c_str(), 0, nullptr, nullptr, nullptr, nullptr, 0) == 0) {
      return failureOf(session_.get());
    }
    PQsetSingleRowMode(session_.get());
    const auto deadline = Clock::now() + answerTime_;
    std::optional<Failure> error;
    for (;;) {
      if (!answerArrives(deadline)) {
        session_.reset();
        return Failure{"Der Datenbankserver antwortet nicht"};
      }
      const Result result(PQgetResult(session_.get()));
      if (!result) return error;
      switch (PQresultStatus(result.get())) {
        case PGRES_SINGLE_TUPLE:
          if (!error && rows && !take(result.get(), *rows)) {
            cancel();
            error = Failure{"Das Ergebnis ist zu groß"};
          }
          break;
        case PGRES_TUPLES_OK:
        case PGRES_COMMAND_OK:
          onlyRead = std::string_view(PQcmdStatus(result.get())).starts_with("SELECT");
          break;
        case PGRES_EMPTY_QUERY:
          error = Failure{"Leere Anweisung"};
          break;
        case PGRES_FATAL_ERROR:
          if (!error) error = failureOf(result.get());
          break;
        default:
          // A copy between server and client has no place here, and only closing the session ends it.
          session_.reset();
          return Failure{"Anweisung wird nicht unterstützt"};
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

  std::chrono::seconds settleTime_;
  std::chrono::seconds answerTime_ = answerTime;
  dbe::Login where_;
  std::string applicationKey_;
  LastServer lastServer_;
  Session session_;
  postgres::Account account_;
  bool written_ = false;
  bool marks_ = true;  ///< the server can say what became of a transaction
};

dbe::Attempt connect(const dbe::Login& login, const LastServer& lastServer, std::chrono::seconds settleTime) {
  Failure failure;
  constexpr const char* maintenance = "postgres";
  auto [password, key] = splitPassword(login.password);
  Session session = logIn(login, {maintenance, login.user, password}, key, lastServer, failure);
  if (!connected(session) && session && PQconnectionUsedPassword(session.get()) != 0 && password != login.password) {
    // The password itself may hold the separator.
    key.clear();
    session = logIn(login, {maintenance, login.user, login.password}, key, lastServer, failure);
  }
  if (!connected(session)) return {nullptr, failure};
  return {std::make_unique<PostgresConnection>(login, key, lastServer, settleTime, std::move(session))};
}

}  // namespace

std::unique_ptr<platform::DbeLibrary> makePostgresDbe(std::chrono::seconds settleTime) {
  return dbe::makeClient([settleTime, lastServer = std::make_shared<LastServer::element_type>()](
                             const dbe::Login& login) { return connect(login, lastServer, settleTime); });
}

}  // namespace kartix::adapters
