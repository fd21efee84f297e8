#include "common/Values.h"
#include "gateway/Answers.h"
#include "gateway/Inquiry.h"
#include "gateway/KBAInterface.h"
#include "gateway/RegisterRecord.h"
#include "objects/Exchange.h"
#include "objects/GatewayObjects.h"
#include "objects/Members.h"
#include "runtime/Runtime.h"

namespace kartix::objects {
namespace {

using platform::Value;
using platform::XmlDocument;
using platform::XmlNode;

constexpr std::int32_t refused = -1;

bool asksForLogin(const XmlDocument& answer) {
  return readInquiryAnswer(answer).kind == InquiryAnswer::Kind::notLoggedIn;
}

class InquiryObject final : public platform::AutomationObject {
 public:
  explicit InquiryObject(const ObjectContext& context) : context_(context) {}

  Value call(std::string_view member, const std::vector<Value>& arguments) override {
    // The gateway is told of the office that the settings name, and of no running number.
    if (isAccount(member) || member == "SetLfdNr" || member == "SetAnfragendeStelle") return {};
    if (std::string* const field = fieldOf(criteria_, member, inquirySetters())) {
      *field = soleText(member, arguments);
      return {};
    }
    if (member == "DoAnfrage") return std::int64_t{DoAnfrage()};
    if (member == "GetErrorMsg") return error_;
    if (member == "GetAnzahlTreffer") return static_cast<std::int64_t>(hits_.size());
    if (member == "selectNodes") return ofCurrentHit(arguments);
    for (const RecordValue& value : recordValues()) {
      if (value.getter == member) return valueOfHit(value.element, arguments);
    }
    unknownMember(member);
  }

 private:
  std::int32_t DoAnfrage() {
    hits_.clear();
    error_.clear();
    std::int32_t outcome = inquire(criteria_);
    if (outcome != 1 || rootName(*answer_) == "zkr-auskunft") return outcome;
    // A list of one line tells less than the record itself.
    InquiryCriteria single;
    single.kgknr = toText(valueOfHit("kgknr", {}));
    return inquire(single);
  }

  std::int32_t inquire(const InquiryCriteria& criteria) {
    const Request request = {
        context_.runtime.konfiguration.AnfrageURI,
        [&](XmlDocument& document) { return BuildZKRAnfrage(context_.runtime, context_.kba, document, criteria); },
        asksForLogin, Effect::reads};
    Exchanged exchanged = exchange(context_, request);
    if (!exchanged.answer) return refuse(exchanged.failure);
    hits_.clear();
    answer_ = std::move(exchanged.answer);
    const InquiryAnswer read = readInquiryAnswer(*answer_);
    switch (read.kind) {
      case InquiryAnswer::Kind::record:
        return take("//bestandsdaten");
      case InquiryAnswer::Kind::list:
        return take("//liste/listelem");
      case InquiryAnswer::Kind::count:
        if (read.hits == 0) return 0;
        return refuse("Die Trefferzahl (" + std::to_string(read.hits) + ") ist für die Anfragekriterien zu hoch.");
      case InquiryAnswer::Kind::refusal:
      case InquiryAnswer::Kind::notLoggedIn:
        return refuse(read.code + ": " + read.text);
      case InquiryAnswer::Kind::unknown:
        break;
    }
    return refuse(read.root.empty() ? "Das ZKR hat keine oder fehlerhafte Daten geliefert."
                                    : unknownAnswer(read.root));
  }

  std::int32_t take(std::string_view xpath) {
    hits_ = answer_->selectNodes(xpath);
    current_ = 0;
    return static_cast<std::int32_t>(hits_.size());
  }

  std::int32_t refuse(std::string reason) {
    error_ = std::move(reason);
    return refused;
  }

  Value valueOfHit(std::string_view element, const std::vector<Value>& arguments) {
    const std::int32_t hit = arguments.empty() ? 1 : toNumber(arguments.front());
    if (hit < 1 || static_cast<std::size_t>(hit) > hits_.size()) {
      throw platform::AutomationError("Ungültige Treffernummer: " + std::to_string(hit));
    }
    current_ = static_cast<std::size_t>(hit) - 1;
    return text(element);
  }

  /// Tells of the hit that was asked for last.
  Value ofCurrentHit(const std::vector<Value>& arguments) {
    return arguments.empty() || current_ >= hits_.size() ? std::string() : text(toText(arguments.front()));
  }

  std::string text(std::string_view element) const {
    const auto found = answer_->selectNodes(".//" + std::string(element), hits_[current_]);
    return found.empty() ? std::string() : answer_->nodeText(found.front());
  }

  ObjectContext context_;
  InquiryCriteria criteria_;
  std::unique_ptr<XmlDocument> answer_;
  std::vector<XmlNode> hits_;
  std::size_t current_ = 0;
  std::string error_;
};

}  // namespace

std::unique_ptr<platform::AutomationObject> makeInquiryObject(const ObjectContext& context) {
  return std::make_unique<InquiryObject>(context);
}

}  // namespace kartix::objects
