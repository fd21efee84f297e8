#include <gtest/gtest.h>

#include <utility>

#include "common/Values.h"
#include "component/Component.h"
#include "gateway/Inquiry.h"
#include "gateway/Notification.h"
#include "gateway/Order.h"
#include "kartix/ObjectClasses.h"
#include "platform/ObjectClasses.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

class OwnObject : public AutomationObject {
 public:
  AutomationValue call(const std::string&, const std::vector<AutomationValue>&) override { return "own"; }
};

/// Who answers for a class: "own", "gateway" (whose error is empty before anything was sent) or "nobody".
std::string whoAnswers(std::string_view progId) {
  try {
    const auto object = Component::shared().runtime().machine.objects.createObject(progId);
    const std::string answer = toText(object->call("GetErrorMsg", {}));
    return answer.empty() ? "gateway" : answer;
  } catch (const platform::AutomationError&) {
    return "nobody";
  }
}

TEST(HostObjects, OfTheHostGoFirstAndThoseOfTheComponentAreAskedFor) {
  const auto own = [] { return std::make_unique<OwnObject>(); };
  const std::string order(orderClass);
  const std::string inquiry(inquiryClass);
  registerAutomationClass(order, own);
  EXPECT_EQ(whoAnswers(inquiry), "nobody");
  useGatewayObjects();
  registerAutomationClass(inquiry, own);
  EXPECT_EQ(whoAnswers(order), "own");
  EXPECT_EQ(whoAnswers(inquiry), "own");
  EXPECT_EQ(whoAnswers(notificationClass), "gateway");
  EXPECT_EQ(whoAnswers("TSW.Other"), "nobody");
  registerAutomationClass(order, {});
  EXPECT_EQ(whoAnswers(order), "gateway");
}

}  // namespace
}  // namespace kartix
