#include <optional>

#include "common/Values.h"
#include "gateway/Answers.h"
#include "gateway/Cancellation.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/Order.h"
#include "objects/Exchange.h"
#include "objects/GatewayObjects.h"
#include "objects/Members.h"
#include "runtime/Runtime.h"

namespace kartix::objects {
namespace {

using platform::Value;
using platform::XmlDocument;

bool asksForLogin(const XmlDocument& answer) {
  return readInformation(answer, CardNumber::none).code == login_result::noSuchSession;
}

class OrderObject final : public platform::AutomationObject {
 public:
  explicit OrderObject(const ObjectContext& context) : context_(context) {}

  Value call(std::string_view member, const std::vector<Value>& arguments) override {
    if (isAccount(member) || set(member, arguments)) return {};
    if (member == "DoBestellungFahrerkarte") return std::int64_t{order()};
    if (member == "DoStorno") return std::int64_t{cancel()};
    if (member == "GetCardNumber") return cardNumber();
    if (member == "GetErrorMsg") return error_;
    unknownMember(member);
  }

 private:
  /// Order and cancellation share some of their members.
  bool set(std::string_view member, const std::vector<Value>& arguments) {
    std::string* const ofOrder = fieldOf(order_, member, orderSetters());
    std::string* const ofCancellation = fieldOf(cancellation_, member, cancellationSetters());
    if (ofOrder) *ofOrder = soleText(member, arguments);
    if (ofCancellation) *ofCancellation = soleText(member, arguments);
    return ofOrder || ofCancellation;
  }

  std::int32_t order() {
    return send(
        [this](XmlDocument& document) {
          return BuildOrderDocument(context_.runtime, context_.kba, document, order_);
        },
        CardNumber::expected);
  }

  std::int32_t cancel() {
    return send(
        [this](XmlDocument& document) {
          return BuildCancellationDocument(context_.runtime, context_.kba, document, cancellation_);
        },
        CardNumber::none);
  }

  /// 0 when the personaliser accepted, else its code or -1, with the reason in `error_`.
  std::int32_t send(const std::function<bool(XmlDocument&)>& build, CardNumber number) {
    cardNumber_.reset();
    const Exchanged exchanged =
        exchange(context_, {context_.runtime.konfiguration.BestellURI, build, asksForLogin, Effect::changes});
    if (!exchanged.answer) {
      error_ = exchanged.failure;
      return -1;
    }
    const KbaAnswer answer = readInformation(*exchanged.answer, number);
    error_ = refusalText(answer);
    if (answer.understood) {
      context_.kba.answerUnderstood();
      cardNumber_ = answer.cardNumber;
    }
    // An order that was accepted without a number is accepted: it is the number that cannot be told.
    return answer.code;
  }

  std::string cardNumber() const {
    if (!cardNumber_) throw platform::AutomationError(error_);
    return *cardNumber_;
  }

  ObjectContext context_;
  OrderMessage order_;
  CancellationMessage cancellation_;
  std::optional<std::string> cardNumber_;  ///< nothing when the answer had none
  std::string error_;
};

}  // namespace

std::unique_ptr<platform::AutomationObject> makeOrderObject(const ObjectContext& context) {
  return std::make_unique<OrderObject>(context);
}

}  // namespace kartix::objects
