#include "gateway/Order.h"

#include "common/Dates.h"
#include "common/Text.h"
#include "common/Values.h"
#include "gateway/Answers.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/OperationWindow.h"
#include "gateway/StreetAddress.h"
#include "hostdb/Session.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr OperationTraits orderTraits = {
    .kind = "Bestellung",
    .sending = "Bestellung wird gesendet...",
    .refused = "Bestellung fehlgeschlagen",
    .refusal = 2007,
    .refusalByObject = 2017,
    .notLoggedIn = login_result::noSuchSession,
};

/// Register status of an accepted order.
constexpr const char* ordered = "01";

/// The worst that can happen to an order: nobody here knows the number of a card that will be made.
void traceUnknownNumber(Trace& trace) {
  trace.TraceLine("Bestellung angenommen, aber keine Kartennummer erhalten", trace_level::calls);
}

}  // namespace

OrderMessage DriverCardOrder::message(const OrderChoices& choices) const {
  const Konfiguration& settings = context_.runtime.konfiguration;
  const CPersonalien& person = context_.session.CurrentPerson;
  const CFahrerkarte& card = context_.session.OperationCard;
  const StreetAddress address = SplitStreet(person.strasse);
  return {
      .lfdNr = card.lfdnr,
      .vorgangschl = card.vorgangschl,
      .antragsdatum = card.antragsdatum,
      .externalAdministrationMark = person.personennummer + "/" + card.lfdnr,
      .reklamation = choices.reklamation,
      .express = choices.express,
      .postversand = choices.postversand,
      .cardIssuingMemberState = {},
      .cardIssuingAuthorityName = settings.BehoerdeVorderseite,
      .nameOfAuthorityAndAddress = settings.BehoerdeRueckseite,
      .anrede = person.anrede(),
      .cardHolderTitle = person.titel,
      .cardHolderSurname = card.familienname,
      .cardHolderFirstNames = card.vornamen,
      .cardHolderBirthDate = person.vhkgebdat,
      .cardHolderBirthplace = person.geburtsort,
      .cardHolderPreferredLanguage = card.sprache,
      .cardHolderStreet = address.street,
      .cardHolderStreetNo = address.number,
      .cardHolderStreetNoAddOn = address.addOn,
      .cardHolderPostcode = person.plz,
      .cardHolderCity = person.wohnort,
      .drivingLicenceNumber = card.kfsnr,
      .drivingLicenceIssuingAuthority = card.fsverwaltung,
      .drivingLicenceIssuingNation = card.kfsstaat,
      .cardIssuingAuthorityKey = settings.KENZA,
      .lastCardNumber = card.kartennralt,
      .cardHolderBirthnameRegister = person.geburtsname,
      .cardHolderBirthnamePartsRegister = person.zusatzg,
      .cardHolderSurnameRegister = person.familienname,
      .cardHolderSurnamePartsRegister = person.zusatzf,
      .cardHolderFirstNamesRegister = person.vornamen,
      .photographFilename = settings.ImageDir + ".jp2",
      .signatureFilename = settings.ImageDir + ".jp3",
  };
}

ReturnCode DriverCardOrder::ReadOrderAnswer(const platform::XmlDocument& document) {
  const KbaAnswer answer = readInformation(document, CardNumber::expected);
  if (answer.understood && answer.code == 0) {
    const std::string today = context_.runtime.global.TodayDB();
    CFahrerkarte& card = context_.session.ResultCard;
    card.kartennr = answer.cardNumber;
    card.bestelldatum = today;
    card.bestellstatusam = today;
    card.scode = ordered;
    card.bestellstatus = card.scodetxt();
    card.zkrdatum = today;
    return 0;
  }
  if (answer.understood && answer.code == login_result::noSuchSession) return answer.code;
  if (!answer.understood && answer.code == 0) traceUnknownNumber(context_.runtime.trace);
  reportAnswer(context_.runtime.reporting, context_.window, answer);
  return answer.understood ? ReturnCode(answer.code) : std::nullopt;
}

void DriverCardOrder::recordOrder() {
  const std::string today = context_.runtime.global.TodayDB();
  CFahrerkarte& card = context_.session.ResultCard;
  card.gueltigab = today;
  card.gueltigbis = noDate;
  card.scode = ordered;
  card.sdate = today;
}

void DriverCardOrder::recordNumber(platform::AutomationObject& object) {
  try {
    const std::string number = text::trimSpace(toText(object.call("GetCardNumber", {})));
    recordOrder();
    context_.session.ResultCard.kartennr = number;
  } catch (const platform::AutomationError&) {
    traceUnknownNumber(context_.runtime.trace);
    throw;
  }
}

void DriverCardOrder::tellSuccess() const {
  constexpr std::string_view succeeded = "Bestellung erfolgreich";
  const auto message = [this] {
    return "\r\nBestellung erfolgreich,\r\nvergebene Kartennummer: " + context_.session.ResultCard.kartennr;
  };
  announceSuccess(context_, succeeded, message, succeeded);
}

bool DriverCardOrder::SendOrderHttp(const OrderChoices& choices) {
  Runtime& runtime = context_.runtime;
  KBAInterface& kba = context_.kba;
  const std::string& service = runtime.konfiguration.BestellURI;
  OrderMessage order = message(choices);
  order.cardIssuingMemberState = kba.namesFirstHost(service) ? "TST" : "D";
  const bool accepted = exchangeHttp(
      context_, orderTraits, service,
      [&](platform::XmlDocument& request) { return BuildOrderDocument(runtime, kba, request, order); },
      [&](const platform::XmlDocument& answer) {
        const ReturnCode code = ReadOrderAnswer(answer);
        if (code == 0) recordOrder();
        return code;
      });
  if (accepted) tellSuccess();
  return accepted;
}

bool DriverCardOrder::SendOrderAutomation(const OrderChoices& choices) {
  const Konfiguration& settings = context_.runtime.konfiguration;
  OrderMessage order = message(choices);
  order.cardIssuingMemberState = settings.Testsystem ? "TST" : "D";
  const auto fill = [&](platform::AutomationObject& object) {
    context_.window.ShowProgress(40, orderTraits.sending, true);
    setAccount(object, settings);
    callSetters(object, order, orderSetters());
    context_.window.ShowProgress(50, "", true);
  };
  const auto send = [this](platform::AutomationObject& object) {
    const std::int32_t result = toNumber(object.call("DoBestellungFahrerkarte", {}));
    context_.window.ShowProgress(80, "Antwort wird verarbeitet...", true);
    if (result == 0) recordNumber(object);
    return result;
  };
  const bool accepted = exchangeAutomation(context_, orderTraits, orderClass, fill, send);
  if (accepted) tellSuccess();
  return accepted;
}

}  // namespace kartix
