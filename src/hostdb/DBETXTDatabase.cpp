#include "kartix/DBETXTDatabase.h"

#include <exception>

#include "common/Numbers.h"
#include "common/Text.h"
#include "platform/DbeLibrary.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::size_t maxFields = 400;
constexpr std::size_t fieldSize = 4096;
constexpr std::size_t smallBuffer = 10;

/// Result of an operation that has not taken place.
constexpr std::int16_t notDone = -1;

constexpr std::int16_t noClient = -2;
constexpr std::int16_t noConnection = -3;
constexpr std::int16_t noDatabase = -4;

std::string_view openFailure(std::int16_t code) {
  switch (code) {
    case noClient:
      return "DBE Client konnte nicht initialisiert werden.";
    case noConnection:
      return "DBE Server: IP, Port, Systembenutzer oder Systempasswort falsch.";
    case noDatabase:
      return "Datenbank: DB-Benutzer, DB-Passwort oder DB-Name falsch.";
    default:
      return "OpenDatabase: Unbekannter Fehler.";
  }
}

std::string cleaned(std::string_view buffer) { return text::trim(text::untilNul(buffer)); }

/// The same where the text stands: most have nothing to lose.
void clean(std::string& buffer) {
  buffer.resize(text::untilNul(buffer).size());
  if (buffer.starts_with(' ') || buffer.ends_with(' ')) buffer = text::trim(buffer);
}

/// The clerk is told what failed; why is for whoever looks after the installation.
void traceReason(Runtime& runtime) {
  const std::string reason = runtime.machine.dbe.failureReason();
  if (!reason.empty()) runtime.trace.TraceLine({"Datenbank: ", reason}, trace_level::calls);
}

}  // namespace

DBETXTDatabase::DBETXTDatabase(Runtime& runtime) : runtime_(runtime) {}

DBETXTDatabase::~DBETXTDatabase() {
  try {
    closeDatabase();
  } catch (const std::exception& failure) {
    runtime_.trace.TraceAbort("DBETXTDatabase::Class_Terminate", failure.what());
  }
}

void DBETXTDatabase::closeDatabase() {
  // At the end of the process the client library may have gone already; the system closes what is open.
  if (!Open_ || Calls::threadEnds()) return;
  Open_ = false;
  const auto close = [&dbe = runtime_.machine.dbe, client = client_, connection = connection_] {
    dbe.DBE_Disconnect(client, connection);
    dbe.DBE_CLEANUP(client);
  };
  if (runtime_.calls.onOwnThread()) {
    close();
  } else {
    runtime_.calls.leaveToOwnThread(close);
  }
}

std::string DBETXTDatabase::db_prepare(const std::string& val) {
  return val.empty() ? " " : text::replaceAll(val, "'", "''");
}

bool DBETXTDatabase::init(const std::string& sDBEip, const std::string& sDBEPort, const std::string& sSysUser,
                          const std::string& sSysPass, const std::string& sDBName, const std::string& sDBUser,
                          const std::string& sdbPass, const std::string& sAppkey) {
  return guarded(runtime_, "DBETXTDatabase::init", false, [&] {
    Ready_ = false;
    runtime_.konfiguration.readOnce();
    Trace& trace = runtime_.trace;
    trace.TraceEnter("DBETXTDatabase::init");
    trace.TraceParam("sDBEip", sDBEip);
    trace.TraceParam("sDBEPort", sDBEPort);
    trace.TraceParam("sSysUser", sSysUser);
    trace.TraceParam("sSysPass", sSysPass);
    trace.TraceParam("sDBName", sDBName);
    trace.TraceParam("sDBUser", sDBUser);
    trace.TraceParam("sdbPass", sdbPass);
    trace.TraceParam("sAppkey", sAppkey);
    sDBEip_ = sDBEip;
    sDBEPort_ = sDBEPort;
    sSysUser_ = sSysUser;
    sSysPass_ = sSysPass;
    sDBName_ = sDBName;
    sDBUser_ = sDBUser;
    sdbPass_ = sdbPass;
    sAppkey_ = sAppkey;
    const std::int16_t code = openDatabase();
    Ready_ = code == 0;
    if (!Ready_) runtime_.reporting.showSystemMessage(openFailure(code), "Fehler beim Öffnen der Datenbank");
    trace.TraceLeave("DBETXTDatabase::exit");
    return Ready_;
  });
}

std::int16_t DBETXTDatabase::openDatabase() {
  const auto open = [&]() -> std::int16_t {
    platform::DbeLibrary& dbe = runtime_.machine.dbe;
    dbe.secure({runtime_.konfiguration.ServerTLS, runtime_.konfiguration.ServerCA});
    client_ = dbe.DBE_Initialize();
    if (client_ < 0) return noClient;
    const std::string password = sAppkey_.empty() ? sSysPass_ : sSysPass_ + ";" + sAppkey_;
    connection_ = dbe.DBE_Connect(client_, 0, sDBEip_, sDBEPort_, sSysUser_, password);
    if (connection_ < 0) {
      traceReason(runtime_);
      dbe.DBE_CLEANUP(client_);
      return noConnection;
    }
    if (dbe.DBE_OpenDataBase(client_, connection_, sDBName_, sDBUser_, sdbPass_, 0) != 0) {
      traceReason(runtime_);
      dbe.DBE_Disconnect(client_, connection_);
      dbe.DBE_CLEANUP(client_);
      return noDatabase;
    }
    Open_ = true;
    return 0;
  };
  // A second init replaces the connection.
  closeDatabase();
  runtime_.trace.TraceEnter("DBETXTDatabase::openDatabase");
  const std::int16_t code = open();
  runtime_.trace.TraceLeave("DBETXTDatabase::openDatabase", code);
  return code;
}

void DBETXTDatabase::resetDataset() {
  guarded(runtime_, "DBETXTDatabase::resetDataset", notDone, [&] {
    dataset_.clear();
    return std::int16_t{0};
  });
}

std::int32_t DBETXTDatabase::query(std::string& sSql, std::string& sCursor) {
  return guarded(runtime_, "DBETXTDatabase::query", std::int32_t{notDone}, [&]() -> std::int32_t {
    row_.clear();
    if (!Ready_) return notDone;
    platform::DbeLibrary& dbe = runtime_.machine.dbe;
    std::string buffer = sSql;
    std::string cursor(smallBuffer, '\0');
    std::string count(smallBuffer, '\0');
    const std::int16_t result = dbe.DBE_Query(client_, connection_, cursor, count, buffer);
    clean(buffer);
    sSql = std::move(buffer);
    if (result < 0) {
      traceReason(runtime_);
      return result;
    }
    row_ = sSql;
    sCursor = cleaned(cursor);
    return leadingInt32(count);
  });
}

std::int32_t DBETXTDatabase::queryNext(std::string& sBuf, const std::string& sCursor) {
  return guarded(runtime_, "DBETXTDatabase::queryNext", std::int32_t{notDone}, [&]() -> std::int32_t {
    if (!Ready_) return notDone;
    platform::DbeLibrary& dbe = runtime_.machine.dbe;
    std::string count(smallBuffer, ' ');
    row_.clear();
    const std::int16_t result = dbe.DBE_GetNextEntry(client_, connection_, 1, sCursor, count, row_);
    if (result < 0) {
      row_.clear();
      sBuf.clear();
      return result;
    }
    clean(row_);
    sBuf = row_;
    return leadingInt32(count);
  });
}

void DBETXTDatabase::closeCursor(const std::string& sCursor) {
  guarded(runtime_, "DBETXTDatabase::closeCursor", notDone,
          [&] { return Ready_ ? runtime_.machine.dbe.DBE_CloseCursor(client_, connection_, sCursor) : notDone; });
}

std::string DBETXTDatabase::Datafield(std::int16_t i) const {
  return guarded(runtime_, "DBETXTDatabase::Datafield", std::string(), [&]() -> std::string {
    if (!Ready_ || i < 1 || static_cast<std::size_t>(i) > maxFields || row_.empty()) return {};
    return cleaned(runtime_.machine.dbe.DBE_COPYBUF(row_, i, fieldSize));
  });
}

void DBETXTDatabase::addDatafield(const std::string& sVal) {
  guarded(runtime_, "DBETXTDatabase::addDatafield", notDone, [&] {
    if (dataset_.size() < maxFields) dataset_.push_back(sVal);
    return std::int16_t{0};
  });
}

std::int16_t DBETXTDatabase::execute(const std::string& statement, bool commit) {
  platform::DbeLibrary& dbe = runtime_.machine.dbe;
  std::int16_t result = dbe.DBE_Execute(client_, connection_, statement);
  if (commit && result == 0) result = dbe.DBE_Execute(client_, connection_, "commit");
  if (result != 0) traceReason(runtime_);
  return result;
}

std::int16_t DBETXTDatabase::addDataset(const std::string& sTable, bool commit) {
  return guarded(runtime_, "DBETXTDatabase::addDataset", notDone, [&]() -> std::int16_t {
    if (!Ready_ || dataset_.empty()) return notDone;
    std::string statement = "insert into " + sTable + " values (";
    for (const std::string& value : dataset_) statement += "'" + db_prepare(value) + "',";
    statement.back() = ')';
    return execute(statement, commit);
  });
}

std::int16_t DBETXTDatabase::executeSQL(const std::string& sSql, bool commit) {
  return guarded(runtime_, "DBETXTDatabase::executeSQL", notDone,
                 [&] { return Ready_ ? execute(sSql, commit) : notDone; });
}

}  // namespace kartix
