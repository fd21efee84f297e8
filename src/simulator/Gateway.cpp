#include "simulator/Gateway.h"

#include "common/Numbers.h"
#include "simulator/PersonaliserService.h"
#include "simulator/RegisterService.h"

namespace kartix::simulator {
namespace {

constexpr std::string_view refusedText = "Der Vorgang wurde abgelehnt.";

const std::vector<Fault>& refusalList() {
  static const std::vector<Fault> faults = {{"F101", "Die Angaben zur Person sind nicht schlüssig."},
                                            {"F202", "Für die Person besteht ein Bearbeitungsvermerk."}};
  return faults;
}

int codeOf(const Element& answer) {
  for (const char* const name : {"retc", "returnCode", "RETC"}) {
    if (answer.find(name)) return leadingInt32(answer.value(name));
  }
  return 0;
}

}  // namespace

Reply Gateway::answer(const Element& request, std::string_view cookieHeader) {
  const std::lock_guard lock(mutex_);
  Reply reply;
  reply.document = documentFor(request, cookieHeader, reply.cookies);
  reply.code = codeOf(reply.document);
  const Kind kind = kindOf(request);
  reply.ordered = (kind == Kind::order || kind == Kind::cancellation) && reply.code == 0;
  return reply;
}

Element Gateway::documentFor(const Element& request, std::string_view cookieHeader,
                             std::vector<std::string>& cookies) {
  constexpr std::size_t tooMany = 57;
  const Kind kind = kindOf(request);
  if (kind == Kind::login) return logins_.logIn(request, scenario_, cookies);
  if (!isLoggedIn(cookieHeader)) return notLoggedIn(request);
  if (scenario_ == Scenario::refused) return refusal(request, return_code::refused, refusedText);
  if (scenario_ == Scenario::refusedWithList)
    return refusal(request, return_code::refused, refusedText, refusalList());
  if (kind == Kind::inquiry && scenario_ == Scenario::tooManyHits) return countedHits(request, tooMany);
  if (kind == Kind::inquiry && scenario_ == Scenario::noHit) return countedHits(request, 0);
  return carryOut(request);
}

bool Gateway::isLoggedIn(std::string_view cookieHeader) {
  if (scenario_ == Scenario::notLoggedIn) return false;
  if (scenario_ == Scenario::notLoggedInOnce && !sessionsForgotten_) {
    sessionsForgotten_ = true;
    logins_.endAllSessions();
  }
  return logins_.isLoggedIn(cookieHeader);
}

Element Gateway::carryOut(const Element& request) {
  switch (kindOf(request)) {
    case Kind::inquiry:
      return answerInquiry(ledger_.books(), request);
    case Kind::notification:
      return answerNotification(ledger_, request);
    case Kind::order:
      return answerOrder(ledger_, request, clock_.now());
    case Kind::cancellation:
      return answerCancellation(ledger_, request, clock_.now());
    case Kind::login:
    case Kind::unknown:
      break;
  }
  return refusal(request, return_code::refused, refusedText);
}

void Gateway::setScenario(Scenario scenario) {
  const std::lock_guard lock(mutex_);
  scenario_ = scenario;
  sessionsForgotten_ = false;
}

Scenario Gateway::scenario() const {
  const std::lock_guard lock(mutex_);
  return scenario_;
}

std::vector<Order> Gateway::orders() const {
  const std::lock_guard lock(mutex_);
  return ledger_.books().orders;
}

}  // namespace kartix::simulator
