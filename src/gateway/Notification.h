#pragma once

#include <cstdint>
#include <string>

#include "gateway/OperationExchange.h"
#include "gateway/Setters.h"

namespace kartix {

/// Class of the host's automation object that reports changes of a card's status.
inline constexpr std::string_view notificationClass = "TSW.Schnittstellen.KBA.ZKR.ARGO2006Mitteilung";

/// Report of a change of a card's status.
struct NotificationMessage {
  std::string lfdNr;              ///< for the host's object only
  std::string mitteilendeStelle;  ///< reporting authority
  std::string kartennummer;
  std::string scode;       ///< two-digit code of the register
  std::string stext;       ///< free text on one line
  std::string changedate;  ///< when the status changed, "yyyymmddhhnnss000"; the host's object knows it by itself
};

Setters<NotificationMessage> notificationSetters();

/// Makes `document` the notification. False when it could not be built.
bool BuildNotificationDocument(Runtime& runtime, KBAInterface& kba, platform::XmlDocument& document,
                               const NotificationMessage& message);

/// Report of the change in the session's `OperationCard`. True when it was accepted; the session's `ResultCard` then
/// holds the reported status. Otherwise the clerk knows why, and `ResultCard` is untouched.
class StatusNotification {
 public:
  explicit StatusNotification(const ExchangeContext& context) : context_(context) {}

  /// Over the component's own transport.
  bool SendNotificationHttp();
  /// Over the host's automation object.
  bool SendNotificationAutomation();

 private:
  NotificationMessage message() const;
  ReturnCode ReadNotificationAnswer(const platform::XmlDocument& document);
  void tellSuccess() const;

  ExchangeContext context_;
};

}  // namespace kartix
