#include "gateway/UnclearEnd.h"

#include "runtime/Trace.h"

namespace kartix {

void traceUnclearEnd(Trace& trace, std::string_view kind, std::string_view mark, std::string_view reason) noexcept {
  trace.TraceLine(
      {"Ausgang unklar: ", kind, " ", mark, " vollständig gesendet, Ergebnis nicht bekannt (", reason, ")"},
      trace_level::calls);
}

}  // namespace kartix
