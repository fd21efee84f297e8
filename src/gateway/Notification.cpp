#include "gateway/Notification.h"

#include <array>

#include "common/Text.h"
#include "common/Values.h"
#include "gateway/Answers.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/MessageDocument.h"
#include "gateway/OperationWindow.h"
#include "hostdb/Session.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr MessageType notificationType = {"zkr-mitteilung", "/zkr/dtd/zkr-mitteilung.dtd"};

constexpr std::array<Setter<NotificationMessage>, 5> setters = {{
    {"SetLfdNr", &NotificationMessage::lfdNr},
    {"SetMitteilendeStelle", &NotificationMessage::mitteilendeStelle},
    {"SetKartennummer", &NotificationMessage::kartennummer},
    {"SetScode", &NotificationMessage::scode},
    {"SetStext", &NotificationMessage::stext},
}};

constexpr OperationTraits notificationTraits = {
    .kind = "Mitteilung",
    .sending = "Mitteilung wird gesendet...",
    .refused = "Mitteilung fehlgeschlagen",
    .refusal = 2011,
    .refusalByObject = 2021,
    .notLoggedIn = login_result::notLoggedIn,
    .animateLogin = false,
};

/// Parts of a change date.
constexpr std::size_t dateLength = 8;
constexpr std::size_t timeLength = 6;

}  // namespace

Setters<NotificationMessage> notificationSetters() { return setters; }

bool BuildNotificationDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                               const NotificationMessage& message) {
  const Konfiguration& settings = runtime.konfiguration;
  // The order service's address tells the test system from the real one for the notifications too.
  return buildMessage(kba, document, notificationType, settings.BestellURI, [&](ElementWriter root) {
    root.group("kopf").value("vers", "1.0").value("kenn", settings.ZEVISUserName).value("exver", "1.1.0");
    root.group("satz")
        .value("grumi", "03")
        .value("stmit", message.mitteilendeStelle)
        .value("sbk25", settings.ZPPER)
        .value("kgknr", message.kartennummer)
        .value("scode", message.scode)
        .value("stime", text::mid(message.changedate, dateLength, timeLength))
        .value("sdate", text::left(message.changedate, dateLength))
        .value("stext", message.stext);
  });
}

NotificationMessage StatusNotification::message() const {
  const CFahrerkarte& card = context_.session.OperationCard;
  return {
      .lfdNr = card.lfdnr,
      .mitteilendeStelle = context_.runtime.konfiguration.KENZA,
      .kartennummer = card.kartennr,
      .scode = card.scode,
      .stext = card.stext,
      .changedate = card.changedate,
  };
}

ReturnCode StatusNotification::ReadNotificationAnswer(const platform::XmlDocument& document) {
  const KbaAnswer answer = readNotificationReply(document);
  // A record that comes back is shown to the clerk whatever its code.
  const bool reply = answer.kind == "zkr-mhinweis";
  if (reply && answer.code == 0) {
    CFahrerkarte& card = context_.session.ResultCard;
    card.scode = context_.session.OperationCard.scode;
    card.zkrdatum = context_.runtime.global.TodayDB();
    return 0;
  }
  if (reply && answer.code == login_result::notLoggedIn) return answer.code;
  reportAnswer(context_.runtime.reporting, context_.window, answer);
  return answer.understood ? ReturnCode(answer.code) : std::nullopt;
}

void StatusNotification::tellSuccess() const {
  announceSuccess(
      context_, "Mitteilung erfolgreich", [] { return "\r\n\r\nDie Mitteilung wurde erfolgreich übertragen."; },
      hintCaption);
}

bool StatusNotification::SendNotificationHttp() {
  const NotificationMessage notification = message();
  const bool accepted = exchangeHttp(
      context_, notificationTraits, context_.runtime.konfiguration.MitteilungsURI,
      [&](platform::XmlDocument& request) {
        return BuildNotificationDocument(context_.runtime, context_.kba, request, notification);
      },
      [&](const platform::XmlDocument& answer) { return ReadNotificationAnswer(answer); });
  if (accepted) tellSuccess();
  return accepted;
}

bool StatusNotification::SendNotificationAutomation() {
  const NotificationMessage notification = message();
  context_.window.ShowProgress(40, notificationTraits.sending, true);
  const auto fill = [&](platform::AutomationObject& object) {
    setAccount(object, context_.runtime.konfiguration);
    callSetters(object, notification, notificationSetters());
    context_.window.ShowProgress(45, "", true);
  };
  const auto send = [](platform::AutomationObject& object) { return toNumber(object.call("DoMitteilung", {})); };
  if (!exchangeAutomation(context_, notificationTraits, notificationClass, fill, send)) return false;
  tellSuccess();
  context_.session.ResultCard.scode = context_.session.OperationCard.scode;
  return true;
}

}  // namespace kartix
