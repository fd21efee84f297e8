#include "objects/GatewayObjects.h"

#include <string>

#include "gateway/Inquiry.h"
#include "gateway/Notification.h"
#include "gateway/Order.h"

namespace kartix::objects {

std::unique_ptr<platform::AutomationObject> GatewayObjects::createObject(std::string_view progId) {
  if (progId == inquiryClass) return makeInquiryObject(context_);
  if (progId == orderClass) return makeOrderObject(context_);
  if (progId == notificationClass) return makeNotificationObject(context_);
  throw platform::AutomationError("Objekterstellung durch ActiveX-Komponente nicht möglich: " + std::string(progId));
}

}  // namespace kartix::objects
