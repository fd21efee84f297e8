#pragma once

#include <memory>
#include <string_view>

#include "platform/ObjectClasses.h"

namespace kartix {
class KBAInterface;
class Login;
class Runtime;
class Session;
}  // namespace kartix

namespace kartix::objects {

/// What the objects of this room work with.
struct ObjectContext {
  Runtime& runtime;
  const Session& session;
  KBAInterface& kba;
  Login& login;
};

/// The component's own automation objects, for a host application that brings none: they perform the exchanges over
/// the component's transport with the gateway that its settings name. What they answer is shown by whoever calls
/// them; only the login, when the gateway asks for one, speaks to the clerk as it does on the component's own road.
class GatewayObjects : public platform::ObjectClasses {
 public:
  explicit GatewayObjects(const ObjectContext& context) : context_(context) {}

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;

 private:
  ObjectContext context_;
};

/// The object that inquires in the register.
std::unique_ptr<platform::AutomationObject> makeInquiryObject(const ObjectContext& context);

/// The object that orders cards and cancels orders.
std::unique_ptr<platform::AutomationObject> makeOrderObject(const ObjectContext& context);
/// The object that reports changes of a card's status.
std::unique_ptr<platform::AutomationObject> makeNotificationObject(const ObjectContext& context);

}  // namespace kartix::objects
