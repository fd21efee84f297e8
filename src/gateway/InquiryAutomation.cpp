#include <array>

#include "common/Text.h"
#include "common/Values.h"
#include "gateway/Inquiry.h"
#include "gateway/Takeover.h"
#include "platform/ObjectClasses.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

void set(platform::AutomationObject& object, std::string_view member, const std::string& value) {
  object.call(member, {value});
}

constexpr std::array<Setter<InquiryCriteria>, 9> criteriaSetters = {{
    {"SetKartennummer", &InquiryCriteria::kgknr},
    {"SetFuehrerscheinnummer", &InquiryCriteria::fsnfk},
    {"SetFamilienname", &InquiryCriteria::name},
    {"SetNamensbestandteileFamilienname", &InquiryCriteria::fnamb},
    {"SetGeburtsname", &InquiryCriteria::gname},
    {"SetNamensbestandteileGeburtsname", &InquiryCriteria::gnamb},
    {"SetGeburtsdatum", &InquiryCriteria::dgebu},
    {"SetGeburtsort", &InquiryCriteria::gort},
    {"SetVornamen", &InquiryCriteria::vname},
}};

void nothingFound(Runtime& runtime) {
  runtime.reporting.InfoMsg("Im ZKR wurden kein Datensatz gefunden.", hintCaption);
}

}  // namespace

Setters<InquiryCriteria> inquirySetters() { return criteriaSetters; }

bool ZKRAnfrage::ZKRAnfrageCOM(const InquiryCriteria& criteria) {
  try {
    return inquire(criteria);
  } catch (const platform::AutomationError& failure) {
    runtime_.reporting.ReportError(2022, failure.what());
    return false;
  }
}

bool ZKRAnfrage::refusedCOM(platform::AutomationObject& object) {
  runtime_.reporting.ReportError(2022, toText(object.call("GetErrorMsg", {})));
  return false;
}

bool ZKRAnfrage::inquire(const InquiryCriteria& criteria) {
  const Konfiguration& settings = runtime_.konfiguration;
  window_.setProgress(40, "Anfrage wird gesendet...", true);
  const auto object = runtime_.machine.objects.createObject(inquiryClass);
  setAccount(*object, settings);
  set(*object, "SetLfdNr", "");
  set(*object, "SetAnfragendeStelle", settings.KENZA);
  callSetters(*object, criteria, inquirySetters());
  window_.setProgress(45, "", true);
  const std::int32_t hits = toNumber(object->call("DoAnfrage", {}));
  window_.setProgress(55, "Antwort wird verarbeitet...", true);
  if (hits < 0) return refusedCOM(*object);
  if (hits == 0) {
    nothingFound(runtime_);
    return false;
  }
  if (hits == 1) {
    TakeOverBestandsdatenCOM(session_, *object);
    return true;
  }
  const auto card = window_.chooseHit(FillTrefferlisteCOM(runtime_, *object));
  return card && singleRecordCOM(text::trimSpace(*card));
}

bool ZKRAnfrage::singleRecordCOM(const std::string& kartennummer) {
  const Konfiguration& settings = runtime_.konfiguration;
  const auto object = runtime_.machine.objects.createObject(inquiryClass);
  setAccount(*object, settings);
  set(*object, "SetAnfragendeStelle", settings.KENZA);
  set(*object, "SetLfdNr", "");
  set(*object, "SetKartennummer", kartennummer);
  window_.setProgress(60, "Einzelauskunft wird angefordert...", true);
  const std::int32_t hits = toNumber(object->call("DoAnfrage", {}));
  window_.setProgress(65, "Antwort wird verarbeitet...", true);
  if (hits < 0) return refusedCOM(*object);
  if (hits == 0) {
    nothingFound(runtime_);
    return false;
  }
  if (hits > 1) return notUnique();
  TakeOverBestandsdatenCOM(session_, *object);
  return true;
}

}  // namespace kartix
