#include "adapters/sqlite/Sqlite.h"

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <new>
#include <random>
#include <thread>

#include "adapters/dbe/Engine.h"
#include "common/Paths.h"

namespace kartix::adapters {
namespace {

using Clock = std::chrono::steady_clock;

/// How long a statement waits for a file that another program writes to.
constexpr std::chrono::seconds busyTime{15};
constexpr int longestPause = 20;  ///< milliseconds between two looks at it
constexpr std::chrono::seconds statementTime{60};
/// Steps of a statement between two looks at the clock.
constexpr int progressSteps = 10'000;
constexpr int longestStatement = 1 << 20;
constexpr int longestValue = 16 << 20;

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
struct FinishStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinishStatement>;

int prepare(sqlite3* database, const char* text, Statement& statement, const char** tail) {
  sqlite3_stmt* raw = nullptr;
  const int result = sqlite3_prepare_v2(database, text, -1, &raw, tail);
  statement.reset(raw);
  return result;
}

/// True when nothing but blanks, comments and semicolons is left.
bool onlyOne(sqlite3* database, const char* tail) {
  while (*tail != '\0') {
    Statement next;
    const char* const from = tail;
    if (prepare(database, from, next, &tail) != SQLITE_OK || next || tail == from) return false;
  }
  return true;
}

/// Keeps statements to the data: no loaded code, no damage to the file's structure, no other files, and double quotes
/// round names only.
void harden(sqlite3* database) {
  for (const int option : {SQLITE_DBCONFIG_DQS_DML, SQLITE_DBCONFIG_DQS_DDL, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION,
                           SQLITE_DBCONFIG_TRUSTED_SCHEMA}) {
    sqlite3_db_config(database, option, 0, nullptr);
  }
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
  sqlite3_limit(database, SQLITE_LIMIT_SQL_LENGTH, longestStatement);
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH, longestValue);
}

/// Why `name` cannot be a database; empty when it can.
std::string pathTrouble(const std::string& name, const std::filesystem::path& path) {
  if (name.empty() || name.find('\0') != std::string::npos || isForeignPath(name)) return "Kein Pfad dieses Rechners";
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (std::filesystem::is_regular_file(status)) return {};
  return std::filesystem::exists(status) || !error ? "Keine Datei" : error.message();
}

class SqliteConnection : public dbe::Connection {
 public:
  std::optional<dbe::Failure> open(const std::string& name, const std::string& /*user*/,
                                   const std::string& /*password*/) override {
    std::error_code error;
    // An absolute path keeps special names from making a database in memory.
    const std::filesystem::path path = std::filesystem::absolute(pathOf(name), error);
    if (const std::string trouble = pathTrouble(name, path); !trouble.empty()) return dbe::Failure{trouble};
    if (error) return dbe::Failure{error.message()};
    sqlite3* raw = nullptr;
    // One thread at a time uses a client: no locks for each field of a row.
    constexpr int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
    const int opened = sqlite3_open_v2(utf8Of(path).c_str(), &raw, flags, nullptr);
    database_.reset(raw);
    if (opened != SQLITE_OK) return message();
    harden(raw);
    sqlite3_busy_handler(
        raw, [](void* self, int /*tries*/) { return static_cast<SqliteConnection*>(self)->waitAgain() ? 1 : 0; },
        this);
    sqlite3_progress_handler(
        raw, progressSteps, [](void* self) { return static_cast<SqliteConnection*>(self)->overdue() ? 1 : 0; }, this);
    // The first look into it tells whether the file is a database at all; what it finds there is kept for the
    // queries.
    started_ = Clock::now();
    const int found = sqlite3_table_column_metadata(raw, nullptr, "sqlite_master", "name", nullptr, nullptr, nullptr,
                                                    nullptr, nullptr);
    if (found == SQLITE_OK) return std::nullopt;
    dbe::Failure failure = message();
    database_.reset();
    return failure;
  }

  std::optional<dbe::Failure> run(const std::string& statement, dbe::RowSet& rows) override {
    started_ = Clock::now();
    auto failure = step(statement, rows);
    // Rows are read to the end, so a transaction that has only read need not keep its lock on the file.
    if (sqlite3_txn_state(database_.get(), nullptr) != SQLITE_TXN_WRITE) end();
    return failure;
  }

 private:
  /// Waits for another's writing. Short pauses of uneven length let each of many have its turn.
  bool waitAgain() {
    if (Clock::now() - started_ > busyTime) return false;
    // Seeded only now: that takes as long as a query, and few ever wait.
    if (!random_) random_.emplace(std::random_device()());
    std::this_thread::sleep_for(std::chrono::milliseconds(1 + static_cast<int>((*random_)() % longestPause)));
    return true;
  }
  bool overdue() const { return Clock::now() - started_ > statementTime; }
  dbe::Failure message() const { return {sqlite3_errmsg(database_.get())}; }
  bool command(const char* text) {
    return sqlite3_exec(database_.get(), text, nullptr, nullptr, nullptr) == SQLITE_OK;
  }

  bool begin() { return sqlite3_get_autocommit(database_.get()) == 0 || command("begin"); }
  void end() {
    if (sqlite3_get_autocommit(database_.get()) == 0) command("rollback");
  }

  std::optional<dbe::Failure> step(const std::string& text, dbe::RowSet& rows) {
    Statement statement;
    const char* tail = nullptr;
    if (prepare(database_.get(), text.c_str(), statement, &tail) != SQLITE_OK) return message();
    if (!statement) return dbe::Failure{"Leere Anweisung"};
    if (!onlyOne(database_.get(), tail)) return dbe::Failure{"Mehr als eine Anweisung"};
    const int columns = sqlite3_column_count(statement.get());
    // A query takes and leaves its lock by itself.
    const bool query = columns > 0 && sqlite3_stmt_readonly(statement.get()) != 0;
    if (!query && !begin()) return message();
    std::vector<std::string_view> fields(static_cast<std::size_t>(columns));
    for (;;) {
      const int result = sqlite3_step(statement.get());
      if (result == SQLITE_DONE) return std::nullopt;
      if (result != SQLITE_ROW) return message();
      for (int i = 0; i < columns; ++i) fields[static_cast<std::size_t>(i)] = value(statement.get(), i);
      if (!rows.add(fields)) return dbe::Failure{"Das Ergebnis ist zu groß"};
    }
  }

  /// The value is taken out once for both of its parts. Nobody else uses the connection meanwhile.
  static std::string_view value(sqlite3_stmt* statement, int column) {
    sqlite3_value* const value = sqlite3_column_value(statement, column);
    const unsigned char* const text = sqlite3_value_text(value);
    if (text) return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_value_bytes(value))};
    if (sqlite3_value_type(value) != SQLITE_NULL) throw std::bad_alloc();
    return {};
  }

  Database database_;
  Clock::time_point started_;
  std::optional<std::minstd_rand> random_;
};

}  // namespace

std::unique_ptr<platform::DbeLibrary> makeSqliteDbe() {
  return dbe::makeClient(
      [](const dbe::Login& /*login*/) { return dbe::Attempt{std::make_unique<SqliteConnection>()}; });
}

}  // namespace kartix::adapters
