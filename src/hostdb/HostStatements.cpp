#include "hostdb/HostStatements.h"

#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "kartix/DBETXTDatabase.h"
#include "platform/Clock.h"
#include "platform/DbeLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {

bool isPersonNumber(std::string_view number) { return text::allDigits(text::trim(number)); }

bool openConfigured(Runtime& runtime, DBETXTDatabase& database) {
  runtime.konfiguration.readOnce();
  const Konfiguration& k = runtime.konfiguration;
  return database.init(k.ServerIP, k.ServerPort, k.SysUser, k.SysPass, k.DBName, k.DBUser, k.DBPass, "");
}

void Assignments::add(std::string_view column, std::string_view value) {
  if (!value.empty()) all_.push_back(std::string(column) + "'" + text::replaceAll(value, "'", "''") + "'");
}

std::string Assignments::joined(std::string_view separator) const {
  std::string text;
  for (const std::string& each : all_) text.append(text.empty() ? "" : separator).append(each);
  return text;
}

bool wasWritten(Runtime& runtime, std::int16_t result, std::string_view what, const std::function<bool()>& stands) {
  if (result != platform::DbeLibrary::outcomeUnknown) return result == 0;
  if (stands()) return true;
  runtime.trace.TraceLine({"Ausgang unklar: ", what, " gesendet, Verbindung zur Datenbank verloren"},
                          trace_level::calls);
  runtime.reporting.showSystemMessage(
      "Die Verbindung zur Datenbank ist beim Schreiben abgebrochen. Ob geschrieben wurde (" + std::string(what) +
          "), ist nicht bekannt. Bitte prüfen, bevor es noch einmal versucht wird.",
      "Fehler beim Schreiben in die Datenbank");
  return false;
}

bool thereIs(DBETXTDatabase& database, const std::string& from) {
  std::string row = "select count(*) from " + from;
  std::string cursor;
  if (database.query(row, cursor) < 0) return false;
  database.closeCursor(cursor);
  return leadingInt32(row) > 0;
}

void writeExchangeLog(Runtime& runtime, DBETXTDatabase& database, const std::string& personennummer,
                      const std::string& reference, const std::string& text) {
  constexpr std::size_t clerkLength = 20;
  const platform::LocalTime now = runtime.machine.clock.now();
  const std::string stamp = moment::stamp(now);
  database.resetDataset();
  for (const std::string& value :
       {std::string(" "), std::string("ZKRI"), personennummer, reference, moment::yyyymmdd(now), moment::hhnnss(now),
        std::string(" "), std::string(" "), std::string(" "), text, std::string(noDate), std::string("0"), stamp,
        text::left(runtime.ClerkName, clerkLength), stamp + ":DATENAUSTAUSCH", std::string(" ")}) {
    database.addDatafield(value);
  }
  database.addDataset("DATENAUSTAUSCH", true);
}

}  // namespace kartix
