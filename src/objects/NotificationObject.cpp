#include "gateway/Answers.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/Notification.h"
#include "hostdb/Session.h"
#include "objects/Exchange.h"
#include "objects/GatewayObjects.h"
#include "objects/Members.h"
#include "runtime/Runtime.h"

namespace kartix::objects {
namespace {

using platform::Value;
using platform::XmlDocument;

bool asksForLogin(const XmlDocument& answer) {
  return readNotificationReply(answer).code == login_result::notLoggedIn;
}

class NotificationObject final : public platform::AutomationObject {
 public:
  explicit NotificationObject(const ObjectContext& context) : context_(context) {}

  Value call(std::string_view member, const std::vector<Value>& arguments) override {
    if (isAccount(member)) return {};
    if (std::string* const field = fieldOf(message_, member, notificationSetters())) {
      *field = soleText(member, arguments);
      return {};
    }
    if (member == "DoMitteilung") return std::int64_t{DoMitteilung()};
    if (member == "GetErrorMsg") return error_;
    unknownMember(member);
  }

 private:
  std::int32_t DoMitteilung() {
    // The host knows when it recorded the change; this one finds it in the record of the running operation.
    message_.changedate = context_.session.OperationCard.changedate;
    const Request request = {context_.runtime.konfiguration.MitteilungsURI,
                             [this](XmlDocument& document) {
                               return BuildNotificationDocument(context_.runtime, context_.kba, document, message_);
                             },
                             asksForLogin, Effect::changes};
    const Exchanged exchanged = exchange(context_, request);
    if (!exchanged.answer) {
      error_ = exchanged.failure;
      return -1;
    }
    const KbaAnswer answer = readNotificationReply(*exchanged.answer);
    if (answer.understood) context_.kba.answerUnderstood();
    error_ = refusalText(answer);
    return answer.understood ? answer.code : -1;
  }

  ObjectContext context_;
  NotificationMessage message_;
  std::string error_;
};

}  // namespace

std::unique_ptr<platform::AutomationObject> makeNotificationObject(const ObjectContext& context) {
  return std::make_unique<NotificationObject>(context);
}

}  // namespace kartix::objects
