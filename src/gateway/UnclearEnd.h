#pragma once

#include <string_view>

namespace kartix {

class Trace;

/// Traces at level 1 that a message went out as a whole and that nobody here knows what came of it:
///
///     Ausgang unklar: Bestellung 4711/1 vollständig gesendet, Ergebnis nicht bekannt (COM/-26)
///
/// `kind` and `mark` say which message. Takes no memory.
void traceUnclearEnd(Trace& trace, std::string_view kind, std::string_view mark, std::string_view reason) noexcept;

}  // namespace kartix
