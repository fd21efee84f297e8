#include "kartix/Kartix.h"

#include "common/Numbers.h"
#include "component/Component.h"
#include "dialogs/Operations.h"
#include "dialogs/StartForm.h"
#include "dialogs/Workplace.h"
#include "gateway/KBAInterface.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "platform/HttpLibrary.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int32_t carriedOut = 1;
constexpr std::int32_t notCarriedOut = -1;

/// Oldest version of the HTTP client library that will do: 2.5.2.
constexpr std::int32_t neededVersion = 205002;

/// Class_Terminate.
void terminate(Component& component) {
  Runtime& runtime = component.runtime();
  guarded(runtime, "Class_Terminate", 0, [&] {
    component.session().release();
    runtime.trace.TraceLine("************ CLASS TERMINATED. ***************", trace_level::calls);
    runtime.TraceClose();
    return 0;
  });
}

/// An exclusive call of `caller`, which the host may destroy meanwhile: then its end comes with that of the call.
template <class Result, class Action>
Result exclusiveOf(Component& component, const Kartix* caller, std::string_view call, Result failure, Action action) {
  Runtime& runtime = component.runtime();
  return exclusive(runtime, caller, call, failure, [&](const Calls::Turn& turn) {
    const Result result = guarded(runtime, call, failure, [&] { return action(turn); });
    if (turn.callerGone()) terminate(component);
    return result;
  });
}

bool CheckHttpLibrary(Runtime& runtime) {
  const std::int32_t version = runtime.machine.http.TESSELHTTPgetDLLVersion();
  if (version < 0) {
    runtime.reporting.ReportError(100);
    return false;
  }
  if (version < neededVersion) {
    runtime.reporting.ReportError(101, std::to_string(version), std::to_string(neededVersion));
    return false;
  }
  return true;
}

bool start(const Workplace& place, const std::string& changeuser, const std::string& personennummer) {
  if (leadingNumber(personennummer) <= 0) return false;
  place.kba.init();
  place.argo.init();
  if (!place.kba.InitXML()) {
    place.runtime.reporting.ReportError(104);
    return false;
  }
  place.runtime.konfiguration.init();
  place.runtime.ClerkName = changeuser;
  if (!place.runtime.konfiguration.ZKRNeu && !CheckHttpLibrary(place.runtime)) return false;
  place.session.begin(personennummer);
  return true;
}

/// What the four operations have in common.
template <class Operation>
std::int32_t operate(Component& component, const Kartix* caller, bool initialised, std::string_view name,
                     Operation operation) {
  return exclusiveOf(component, caller, name, notCarriedOut, [&](const Calls::Turn&) -> std::int32_t {
    Workplace& place = component.workplace();
    place.runtime.reporting.forget();
    place.runtime.trace.TraceCall(name);
    return initialised && place.session.ready() ? operation(place) : notCarriedOut;
  });
}

std::int32_t outcome(std::int16_t result) { return result == carriedOut ? carriedOut : notCarriedOut; }

}  // namespace

Kartix::Kartix(Component& component) : component_(component) {
  Runtime& runtime = component_.runtime();
  exclusive(runtime, this, "Class_Initialize", 0, [&](const Calls::Turn&) {
    runtime.forgetDisplay();
    runtime.TraceOpen();
    component_.traceTestClerk();
    return 0;
  });
}

Kartix::~Kartix() {
  Runtime& runtime = component_.runtime();
  guarded(runtime, "Class_Terminate", 0, [&] {
    if (runtime.calls.leaveInTurn(this)) return 0;
    return exclusive(runtime, nullptr, "Class_Terminate", 0, [&](const Calls::Turn&) {
      terminate(component_);
      return 0;
    });
  });
}

bool Kartix::init(const std::string& changeuser, const std::string& personennummer) {
  Component& component = component_;
  return guarded(component.runtime(), "Function init", false, [&] {
    // A start that fails or is refused must not leave the host with the person of an earlier one.
    Initialised_ = false;
    return exclusiveOf(component, this, "Function init", false, [&](const Calls::Turn& turn) {
      component.runtime().reporting.forget();
      component.runtime().trace.TraceCall("Function init");
      const bool ready = start(component.workplace(), changeuser, personennummer);
      if (!turn.callerGone()) Initialised_ = ready;
      return ready;
    });
  });
}

std::int32_t Kartix::ZKRAnfrage(const std::string& lfdnr) {
  return operate(component_, this, Initialised_, "Function ZKRAnfrage", [&](Workplace& place) {
    place.session.beginOperation(lfdnr);
    return runInquiry(place);
  });
}

std::int32_t Kartix::FahrerKartenBestellung(const std::string& lfdnr) {
  return operate(component_, this, Initialised_, "Function FahrerKartenBestellung", [&](Workplace& place) {
    if (!place.runtime.konfiguration.GetImageDir(place.session.CurrentPerson.personennummer)) {
      place.runtime.reporting.ReportError(2000);
      return notCarriedOut;
    }
    place.session.beginOperation(lfdnr);
    return outcome(runOrder(place));
  });
}

std::int32_t Kartix::KartenMitteilung(const std::string& lfdnr) {
  return operate(component_, this, Initialised_, "Function KartenMitteilung", [&](Workplace& place) {
    place.session.beginOperation(lfdnr);
    return outcome(runNotification(place));
  });
}

std::int32_t Kartix::KartenStorno(const std::string& lfdnr) {
  return operate(component_, this, Initialised_, "Function KartenStorno", [&](Workplace& place) {
    place.session.beginOperation(lfdnr);
    return outcome(runCancellation(place));
  });
}

}  // namespace kartix
