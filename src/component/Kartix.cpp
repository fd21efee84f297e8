#include "kartix/Kartix.h"

#include <exception>

#include "common/Numbers.h"
#include "component/Component.h"
#include "dialogs/Operations.h"
#include "dialogs/StartForm.h"
#include "dialogs/Workplace.h"
#include "gateway/KBAInterface.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "platform/HttpLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::int32_t carriedOut = 1;
constexpr std::int32_t notCarriedOut = -1;

/// Oldest version of the HTTP client library that will do: 2.5.2.
constexpr std::int32_t neededVersion = 205002;

/// Nothing may leave a public call: a failure that no room has dealt with is traced and ends the call.
template <class Result, class Action>
Result guarded(Runtime& runtime, Result failure, Action action) {
  try {
    return action();
  } catch (const std::exception& error) {
    runtime.trace.TraceLine(std::string("Abbruch: ") + error.what(), trace_level::calls);
  } catch (...) {
    runtime.trace.TraceLine("Abbruch: unbekannter Fehler", trace_level::calls);
  }
  return failure;
}

/// What the four operations have in common.
template <class Operation>
std::int32_t operate(Component& component, bool initialised, std::string_view name, Operation operation) {
  Workplace& place = component.workplace();
  place.runtime.trace.TraceCall(name);
  if (!initialised || !place.session.ready()) return notCarriedOut;
  return guarded(place.runtime, notCarriedOut, [&]() -> std::int32_t { return operation(place); });
}

std::int32_t outcome(std::int16_t result) { return result == carriedOut ? carriedOut : notCarriedOut; }

}  // namespace

Kartix::Kartix(Component& component) : component_(component) {
  Runtime& runtime = component_.runtime();
  runtime.forgetDisplay();
  guarded(runtime, 0, [&] {
    runtime.TraceOpen();
    return 0;
  });
}

Kartix::~Kartix() {
  Runtime& runtime = component_.runtime();
  guarded(runtime, 0, [&] {
    component_.session().release();
    runtime.trace.TraceLine("************ CLASS TERMINATED. ***************", trace_level::calls);
    runtime.TraceClose();
    return 0;
  });
}

bool Kartix::init(const std::string& changeuser, const std::string& personennummer) {
  Runtime& runtime = component_.runtime();
  runtime.trace.TraceCall("Function init");
  // A failed start must not leave the host with the person of an earlier one.
  Initialised_ = false;
  Initialised_ = guarded(runtime, false, [&] { return start(changeuser, personennummer); });
  return Initialised_;
}

bool Kartix::start(const std::string& changeuser, const std::string& personennummer) {
  if (leadingNumber(personennummer) <= 0) return false;
  const Workplace& place = component_.workplace();
  place.kba.init();
  place.argo.init();
  if (!place.kba.InitXML()) {
    place.runtime.reporting.ReportError(104);
    return false;
  }
  place.runtime.konfiguration.init();
  place.runtime.ClerkName = changeuser;
  if (!place.runtime.konfiguration.ZKRNeu && !CheckHttpLibrary()) return false;
  place.session.begin(personennummer);
  return true;
}

bool Kartix::CheckHttpLibrary() {
  Runtime& runtime = component_.runtime();
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

std::int32_t Kartix::ZKRAnfrage(const std::string& lfdnr) {
  return operate(component_, Initialised_, "Function ZKRAnfrage", [&](Workplace& place) {
    place.session.CurrentLfdnr = lfdnr;
    return runInquiry(place);
  });
}

std::int32_t Kartix::FahrerKartenBestellung(const std::string& lfdnr) {
  return operate(component_, Initialised_, "Function FahrerKartenBestellung", [&](Workplace& place) {
    if (!place.runtime.konfiguration.GetImageDir(place.session.CurrentPerson.personennummer)) {
      place.runtime.reporting.ReportError(2000);
      return notCarriedOut;
    }
    place.session.CurrentLfdnr = lfdnr;
    return outcome(runOrder(place));
  });
}

std::int32_t Kartix::KartenMitteilung(const std::string& lfdnr) {
  return operate(component_, Initialised_, "Function KartenMitteilung", [&](Workplace& place) {
    place.session.CurrentLfdnr = lfdnr;
    return outcome(runNotification(place));
  });
}

std::int32_t Kartix::KartenStorno(const std::string& lfdnr) {
  return operate(component_, Initialised_, "Function KartenStorno", [&](Workplace& place) {
    place.session.CurrentLfdnr = lfdnr;
    return outcome(runCancellation(place));
  });
}

}  // namespace kartix
