#pragma once

#include <exception>
#include <string_view>

#include "runtime/Runtime.h"

namespace kartix {

/// Runs `action` for the public call `call`, out of which nothing may be thrown: a failure that no room has dealt
/// with is traced and gives `failure`. A call on another thread than the component's own is refused with it: every
/// public call that touches more than its own object passes here.
template <class Result, class Action>
Result guarded(Runtime& runtime, std::string_view call, Result failure, Action action) {
  if (!runtime.calls.onOwnThread()) {
    runtime.refuseThread(call);
    return failure;
  }
  try {
    runtime.calls.catchUp();
    return action();
  } catch (const std::exception& error) {
    runtime.trace.TraceAbort(call, error.what());
  } catch (...) {
    runtime.trace.TraceAbort(call, "unbekannter Fehler");
  }
  return failure;
}

/// `guarded` for a call that has the session to itself: an operation, and what begins or ends a session. While one
/// runs, every other is refused. `action` is given the turn.
template <class Result, class Action>
Result exclusive(Runtime& runtime, const void* caller, std::string_view call, Result failure, Action action) {
  return guarded(runtime, call, failure, [&]() -> Result {
    const Calls::Turn turn(runtime.calls, caller);
    if (turn.taken()) return action(turn);
    runtime.trace.TraceRefusal(call, "ein anderer Aufruf läuft noch");
    return failure;
  });
}

}  // namespace kartix
