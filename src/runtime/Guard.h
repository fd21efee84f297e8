#pragma once

#include <exception>
#include <string_view>

#include "runtime/Trace.h"

namespace kartix {

/// Runs `action` for the public call `call`, out of which nothing may be thrown: a failure that no room has dealt
/// with is traced and gives `failure`.
template <class Result, class Action>
Result guarded(Trace& trace, std::string_view call, Result failure, Action action) {
  try {
    return action();
  } catch (const std::exception& error) {
    trace.TraceAbort(call, error.what());
  } catch (...) {
    trace.TraceAbort(call, "unbekannter Fehler");
  }
  return failure;
}

}  // namespace kartix
