#pragma once

#include <memory>
#include <string_view>

#include "platform/ObjectClasses.h"

namespace kartix {
struct Workplace;
}

namespace kartix::host {

/// The automation objects of this host application: they perform the exchanges over the component's transport with
/// the gateway that its settings name, and log in when the gateway asks for it. They show nothing to the clerk.
class GatewayObjects : public platform::ObjectClasses {
 public:
  /// The component to work with, which outlives the objects. Until then no object can be created.
  void connect(Workplace& place) { place_ = &place; }

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;

 private:
  Workplace* place_ = nullptr;
};

/// The object that inquires in the register.
std::unique_ptr<platform::AutomationObject> makeInquiryObject(Workplace& place);

/// The object that orders cards and cancels orders.
std::unique_ptr<platform::AutomationObject> makeOrderObject(Workplace& place);
/// The object that reports changes of a card's status.
std::unique_ptr<platform::AutomationObject> makeNotificationObject(Workplace& place);

}  // namespace kartix::host
