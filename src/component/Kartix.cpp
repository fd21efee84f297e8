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

/// What the four operations have in common.
template <class Operation>
std::int32_t operate(Component& component, bool initialised, std::string_view name, Operation operation) {
  Workplace& place = component.workplace();
  return guarded(place.runtime.trace, name, notCarriedOut, [&]() -> std::int32_t {
    place.runtime.trace.TraceCall(name);
    return initialised && place.session.ready() ? operation(place) : notCarriedOut;
  });
}

std::int32_t outcome(std::int16_t result) { return result == carriedOut ? carriedOut : notCarriedOut; }

}  // namespace

Kartix::Kartix(Component& component) : component_(component) {
  Runtime& runtime = component_.runtime();
  runtime.forgetDisplay();
  guarded(runtime.trace, "Class_Initialize", 0, [&] {
    runtime.TraceOpen();
    return 0;
  });
}

Kartix::~Kartix() {
  Runtime& runtime = component_.runtime();
  guarded(runtime.trace, "Class_Terminate", 0, [&] {
    component_.session().release();
    runtime.trace.TraceLine("************ CLASS TERMINATED. ***************", trace_level::calls);
    runtime.TraceClose();
    return 0;
  });
}

bool Kartix::init(const std::string& changeuser, const std::string& personennummer) {
  Trace& trace = component_.runtime().trace;
  // A failed start must not leave the host with the person of an earlier one.
  Initialised_ = false;
  Initialised_ = guarded(trace, "Function init", false, [&] {
    trace.TraceCall("Function init");
    return start(changeuser, personennummer);
  });
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
