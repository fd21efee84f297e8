#include "gateway/Order.h"

#include "common/Dates.h"
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

std::int32_t DriverCardOrder::ReadOrderAnswer(const platform::XmlDocument& document) {
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
  return answer.understood ? answer.code : -1;
}

void DriverCardOrder::recordOrder() {
  const std::string today = context_.runtime.global.TodayDB();
  CFahrerkarte& card = context_.session.ResultCard;
  card.gueltigab = today;
  card.gueltigbis = noDate;
  card.scode = ordered;
  card.sdate = today;
}

void DriverCardOrder::tellSuccess() const {
  constexpr std::string_view succeeded = "Bestellung erfolgreich";
  const std::string number = context_.session.ResultCard.kartennr;
  announceSuccess(context_, succeeded, "\r\nBestellung erfolgreich,\r\nvergebene Kartennummer: " + number, succeeded);
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
      [&](const platform::XmlDocument& answer) { return ReadOrderAnswer(answer); });
  if (!accepted) return false;
  recordOrder();
  tellSuccess();
  return true;
}

bool DriverCardOrder::SendOrderAutomation(const OrderChoices& choices) {
  const Konfiguration& settings = context_.runtime.konfiguration;
  OrderMessage order = message(choices);
  order.cardIssuingMemberState = settings.Testsystem ? "TST" : "D";
  std::string cardNumber;
  const auto perform = [&](platform::AutomationObject& object) {
    context_.window.ShowProgress(40, orderTraits.sending, true);
    setAccount(object, settings);
    callSetters(object, order, orderSetters());
    context_.window.ShowProgress(50, "", true);
    const std::int32_t result = toNumber(object.call("DoBestellungFahrerkarte", {}));
    context_.window.ShowProgress(80, "Antwort wird verarbeitet...", true);
    if (result != 0) return false;
    try {
      cardNumber = toText(object.call("GetCardNumber", {}));
    } catch (const platform::AutomationError&) {
      traceUnknownNumber(context_.runtime.trace);
      throw;
    }
    return true;
  };
  if (!exchangeAutomation(context_, orderTraits, orderClass, perform)) return false;
  recordOrder();
  context_.session.ResultCard.kartennr = cardNumber;
  tellSuccess();
  return true;
}

}  // namespace kartix
