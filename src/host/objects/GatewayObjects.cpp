#include "host/objects/GatewayObjects.h"

#include <string>

#include "gateway/Inquiry.h"
#include "gateway/Notification.h"
#include "gateway/Order.h"

namespace kartix::host {

std::unique_ptr<platform::AutomationObject> GatewayObjects::createObject(std::string_view progId) {
  if (place_ && progId == inquiryClass) return makeInquiryObject(*place_);
  if (place_ && progId == orderClass) return makeOrderObject(*place_);
  if (place_ && progId == notificationClass) return makeNotificationObject(*place_);
  throw platform::AutomationError("Objekterstellung durch ActiveX-Komponente nicht möglich: " + std::string(progId));
}

}  // namespace kartix::host
