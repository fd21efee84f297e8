#include "hostdb/HostStatements.h"

#include "common/Dates.h"
#include "common/Text.h"
#include "kartix/DBETXTDatabase.h"
#include "platform/Clock.h"
#include "runtime/Runtime.h"

namespace kartix {

bool isPersonNumber(std::string_view number) { return text::allDigits(text::trim(number)); }

bool openConfigured(Runtime& runtime, DBETXTDatabase& database) {
  runtime.konfiguration.readOnce();
  const Konfiguration& k = runtime.konfiguration;
  return database.init(k.ServerIP, k.ServerPort, k.SysUser, k.SysPass, k.DBName, k.DBUser, k.DBPass, "");
}

std::string assignment(std::string_view column, std::string_view value) {
  if (value.empty()) return {};
  return std::string(column) + "'" + text::replaceAll(value, "'", "''") + "',";
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
