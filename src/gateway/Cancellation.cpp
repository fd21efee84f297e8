#include "gateway/Cancellation.h"

#include <array>

#include "common/Values.h"
#include "gateway/Answers.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/MessageDocument.h"
#include "gateway/OperationWindow.h"
#include "gateway/Order.h"
#include "hostdb/Session.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr MessageType cancellationType = {"orderCancellation", "/personalisierer/dtd/kgk-stornierung.dtd"};

constexpr std::array<Setter<CancellationMessage>, 6> setters = {{
    {"SetLfdNr", &CancellationMessage::lfdNr},
    {"SetVorgangschl", &CancellationMessage::vorgangschl},
    {"SetAntragsdatum", &CancellationMessage::antragsdatum},
    {"SetExternalAdministrationMark", &CancellationMessage::externalAdministrationMark},
    {"SetCardIssuingAuthorityKey", &CancellationMessage::cardIssuingAuthorityKey},
    {"SetCardNumber", &CancellationMessage::cardNumber},
}};

constexpr OperationTraits cancellationTraits = {
    .kind = "Storno",
    .sending = "Storno wird gesendet...",
    .refused = "Stornierung fehlgeschlagen",
    .refusal = 2008,
    .refusalByObject = 2018,
    .notLoggedIn = login_result::noSuchSession,
};

}  // namespace

Setters<CancellationMessage> cancellationSetters() { return setters; }

bool BuildCancellationDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                               const CancellationMessage& message) {
  const Konfiguration& settings = runtime.konfiguration;
  return buildMessage(kba, document, cancellationType, settings.BestellURI, [&](ElementWriter root) {
    root.group("head")
        .value("version", "1.0")
        .value("externalVersion", "1.1.0")
        .value("userName", settings.ZPPER)
        .value("reason", "5");
    root.group("body")
        .value("cardNumber", message.cardNumber)
        .value("cardIssuingAuthorityKey", message.cardIssuingAuthorityKey);
  });
}

CancellationMessage OrderCancellation::message() const {
  const CFahrerkarte& card = context_.session.OperationCard;
  return {
      .lfdNr = card.lfdnr,
      .vorgangschl = card.vorgangschl,
      .antragsdatum = card.antragsdatum,
      .externalAdministrationMark = context_.session.CurrentPerson.personennummer + "/" + card.lfdnr,
      .cardIssuingAuthorityKey = context_.runtime.konfiguration.KENZA,
      .cardNumber = card.kartennr,
  };
}

ReturnCode OrderCancellation::ReadCancellationAnswer(const platform::XmlDocument& document) {
  const KbaAnswer answer = readInformation(document, CardNumber::none);
  if (answer.understood && answer.code == 0) {
    recordCancellation();
    return 0;
  }
  if (answer.understood && answer.code == login_result::noSuchSession) return answer.code;
  reportAnswer(context_.runtime.reporting, context_.window, answer);
  return answer.understood ? ReturnCode(answer.code) : std::nullopt;
}

void OrderCancellation::recordCancellation() {
  const std::string today = context_.runtime.global.TodayDB();
  CFahrerkarte& card = context_.session.ResultCard;
  card.scode = "101";
  card.bestellstatus = card.scodetxt();
  card.zkrdatum = today;
  card.bestellstatusam = today;
  card.vorgangschl = "ST";
}

void OrderCancellation::tellSuccess() const {
  announceSuccess(
      context_, "Stornierung erfolgreich", [] { return "\r\n\r\nStornierung erfolgreich."; }, hintCaption);
}

bool OrderCancellation::SendCancellationHttp() {
  const CancellationMessage cancellation = message();
  const bool accepted = exchangeHttp(
      context_, cancellationTraits, context_.runtime.konfiguration.BestellURI,
      [&](platform::XmlDocument& request) {
        return BuildCancellationDocument(context_.runtime, context_.kba, request, cancellation);
      },
      [&](const platform::XmlDocument& answer) { return ReadCancellationAnswer(answer); });
  if (accepted) tellSuccess();
  return accepted;
}

bool OrderCancellation::SendCancellationAutomation() {
  const CancellationMessage cancellation = message();
  const auto fill = [&](platform::AutomationObject& object) {
    context_.window.ShowProgress(40, cancellationTraits.sending, true);
    setAccount(object, context_.runtime.konfiguration);
    callSetters(object, cancellation, cancellationSetters());
    context_.window.ShowProgress(45, "", true);
  };
  const auto send = [this](platform::AutomationObject& object) {
    const std::int32_t result = toNumber(object.call("DoStorno", {}));
    if (result != 0) return result;
    recordCancellation();
    context_.session.ResultCard.kartennr = " ";
    return result;
  };
  const bool accepted = exchangeAutomation(context_, cancellationTraits, orderClass, fill, send);
  if (accepted) tellSuccess();
  return accepted;
}

}  // namespace kartix
