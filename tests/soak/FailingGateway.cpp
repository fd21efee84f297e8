#include "soak/FailingGateway.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <thread>

namespace kartix::test {
namespace {

using namespace std::string_literals;
using Then = Reply::Then;

std::string accepted(Kind kind, std::size_t number) {
  switch (kind) {
    case Kind::order:
      return "<information><head><returnCode>0</returnCode><cardNumber>" + FailingGateway::newCardNumber(number) +
             "</cardNumber></head></information>";
    case Kind::cancellation:
      return "<information><head><returnCode>0</returnCode></head></information>";
    case Kind::notification:
      return "<zkr-mhinweis><retc>0</retc><rett>verarbeitet</rett></zkr-mhinweis>";
    case Kind::inquiry:
    case Kind::passwordChange:
      break;
  }
  return "<zkr-auskunft><bestandsdaten><kgknr>DF00000000000001</kgknr></bestandsdaten></zkr-auskunft>";
}

/// `code` as the service of `kind` says it, with a list of faults where it has one.
std::string refused(Kind kind, const std::string& code, bool list) {
  if (kind == Kind::order || kind == Kind::cancellation) {
    return "<information><head><returnCode>" + code + "</returnCode></head>" +
           (list ? "<errorList><error><errorCode>F1</errorCode></error></errorList>" : "") + "</information>";
  }
  if (kind == Kind::inquiry) return "<zkr-hinweis><retc>" + code + "</retc></zkr-hinweis>";
  if (!list) return "<zkr-mhinweis><retc>" + code + "</retc></zkr-mhinweis>";
  return "<zkr-mitteilung><satz><retc>" + code +
         "</retc></satz><fehler><fehlerelem><fhinw>H1</fhinw></fehlerelem>"
         "</fehler></zkr-mitteilung>";
}

std::string loginWanted(Kind kind) {
  const bool personaliser = kind == Kind::order || kind == Kind::cancellation;
  return answer(refused(kind, personaliser ? "3000" : "3020", false));
}

std::string loginAnswer(const std::string& code, const std::string& headers = {}) {
  return answer("<ZEVIS-HINWEIS><RETC>" + code + "</RETC></ZEVIS-HINWEIS>", "200 OK", headers);
}

/// The text of the element `name`; empty when there is none.
std::string textOf(const std::string& document, const std::string& name) {
  const std::string begin = "<" + name + ">";
  const auto at = document.find(begin);
  if (at == std::string::npos) return {};
  return document.substr(at + begin.size(), document.find("</", at) - at - begin.size());
}

/// What becomes of a message that is answered by a fault.
enum class Fate { taken, dropped, refused };

/// A way of failing: what is sent in place of an answer, and what comes then.
struct Fault {
  const char* name;
  Fate fate;
  Then then;
  std::string (*bytes)(Kind, const std::string& accepted);
};

std::string chunked(const std::string& body, const std::string& end) {
  std::array<char, 16> size{};
  std::snprintf(size.data(), size.size(), "%zx", body.size());
  return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(size.data()) + "\r\n" + body + end;
}

std::string nothing(Kind /*kind*/, const std::string& /*accepted*/) { return {}; }

std::string halfABody(Kind /*kind*/, const std::string& accepted) {
  const std::string whole = answer(accepted);
  return whole.substr(0, whole.size() - accepted.size() / 2);
}

std::string late(Kind /*kind*/, const std::string& accepted) {
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return answer(accepted);
}

std::string withoutCardNumber(Kind kind, const std::string& body) {
  return answer(kind == Kind::order ? accepted(Kind::cancellation, 0) : body);
}

/// As large as it takes for the component to cut it.
std::string large(Kind /*kind*/, const std::string& body) { return answer(std::string(120000, ' ') + body); }

constexpr auto faults = std::to_array<Fault>({
    {"closes unanswered", Fate::dropped, Then::close, nothing},
    {"takes it and closes", Fate::taken, Then::close, nothing},
    {"resets after the request", Fate::taken, Then::reset, nothing},
    {"half a head", Fate::taken, Then::close, [](auto, auto&) { return "HTTP/1.1 200 OK\r\nContent-"s; }},
    {"head without its end", Fate::taken, Then::close, [](auto, auto&) { return "HTTP/1.1 200 OK\r\n"s; }},
    {"half a body", Fate::taken, Then::close, halfABody},
    {"bad chunk", Fate::taken, Then::close, [](auto, auto& body) { return chunked(body, "xx\r\n"); }},
    {"no last chunk", Fate::taken, Then::close, [](auto, auto& body) { return chunked(body, "\r\n"); }},
    {"empty answer", Fate::taken, Then::keepOpen, [](auto, auto&) { return answer(""); }},
    {"no HTTP", Fate::taken, Then::close, [](auto, auto& body) { return body; }},
    {"no XML", Fate::dropped, Then::keepOpen, [](auto, auto&) { return answer("Wartung"); }},
    {"another message", Fate::dropped, Then::keepOpen, [](auto, auto&) { return answer("<oops/>"); }},
    {"status 099", Fate::taken, Then::close, [](auto, auto& body) { return answer(body, "099 OK"); }},
    {"404", Fate::refused, Then::keepOpen, [](auto, auto&) { return answer("", "404 Not Found"); }},
    {"500", Fate::dropped, Then::keepOpen, [](auto, auto&) { return answer("", "500 Internal Server Error"); }},
    {"takes it and answers 500", Fate::taken, Then::keepOpen,
     [](auto, auto& body) { return answer(body, "500 Internal Server Error"); }},
    {"refuses", Fate::refused, Then::keepOpen, [](auto kind, auto&) { return answer(refused(kind, "17", false)); }},
    {"refuses with a list", Fate::refused, Then::keepOpen,
     [](auto kind, auto&) { return answer(refused(kind, "17", true)); }},
    {"no card number", Fate::taken, Then::keepOpen, withoutCardNumber},
    {"large", Fate::taken, Then::keepOpen, large},
    {"slow", Fate::taken, Then::keepOpen, late},
    {"says nothing", Fate::taken, Then::hang, nothing},
});

}  // namespace

FailingGateway::FailingGateway(unsigned seed)
    : random_(seed), server_([this](const RecordedRequest& request) { return replyTo(request); }) {
  taken_ = {{"login asked for", {}}, {"login fails", {}}};
  for (const Fault& fault : faults) taken_[fault.name] = {};
}

std::string FailingGateway::cardNumber(std::size_t number) { return "DF0000000" + std::to_string(1000000 + number); }

std::string FailingGateway::newCardNumber(std::size_t number) {
  return "DF0000000" + std::to_string(2000000 + number);
}

void FailingGateway::expect(std::size_t number, Kind kind, Road road) {
  const std::scoped_lock lock(mutex_);
  current_ = number;
  road_ = static_cast<std::size_t>(road);
  kinds_[number] = kind;
  server_.forgetRequests();
}

void FailingGateway::recover() {
  const std::scoped_lock lock(mutex_);
  recovered_ = true;
  sessions_.clear();
}

std::string FailingGateway::password(const std::string& account) {
  const std::scoped_lock lock(mutex_);
  return passwords_.try_emplace(account, "geheim1").first->second;
}

std::map<std::size_t, Seen> FailingGateway::seen() {
  const std::scoped_lock lock(mutex_);
  return seen_;
}

std::map<std::string, FailingGateway::Times> FailingGateway::taken() {
  const std::scoped_lock lock(mutex_);
  return taken_;
}

Reply FailingGateway::replyTo(const RecordedRequest& request) {
  const std::scoped_lock lock(mutex_);
  if (request.head.starts_with("POST /anmeldung ")) return logIn(request.body);
  constexpr std::string_view prefix = "DF00000001";
  const auto at = request.body.find(prefix);
  // An inquiry carries no number of ours.
  const std::size_t number =
      at == std::string::npos ? current_ : std::stoul(request.body.substr(at + prefix.size(), 6));
  Seen& seen = seen_[number];
  if (!std::exchange(seen.asked, false)) seen.again = true;
  seen.refused = false;
  const Kind kind = kinds_.at(number);
  const auto session = request.head.find("kba.session=");
  const bool known =
      session != std::string::npos &&
      sessions_.contains(request.head.substr(session + 12, request.head.find(';', session) - session - 12));
  if (known && (recovered_ || random_() % 50 != 0)) return carryOut(kind, number, seen);
  seen.asked = seen.refused = true;
  ++taken_["login asked for"][road_];
  return {loginWanted(kind)};
}

Reply FailingGateway::logIn(const std::string& body) {
  std::string& password = passwords_.try_emplace(textOf(body, "KENN"), "geheim1").first->second;
  const bool fails = !recovered_ && random_() % 4 == 0;
  if (fails) ++taken_["login fails"][road_];
  if (fails && random_() % 2 == 0) return {"", Then::close};
  if (textOf(body, "PASS") != password) return {loginAnswer("1001")};
  if (const std::string changed = textOf(body, "PASSN"); !changed.empty()) {
    password = changed;
    return fails ? Reply{"", Then::close} : Reply{loginAnswer("300")};
  }
  if (fails) return {"", Then::close};
  const std::string session = std::to_string(random_());
  sessions_.insert(session);
  return {loginAnswer("0", "Set-Cookie: kba.session=" + session + "\r\nSet-Cookie: JServSessionIdroot=x\r\n")};
}

Reply FailingGateway::carryOut(Kind kind, std::size_t number, Seen& seen) {
  const std::string body = accepted(kind, number);
  if (recovered_ || random_() % 2 == 0) {
    ++seen.taken;
    return {answer(body, "200 OK", "Keep-Alive: timeout=60\r\n")};  // saves the wait that shows it
  }
  const Fault& fault = faults[nextFault_[road_]++ % faults.size()];
  ++taken_[fault.name][road_];
  seen.fault = fault.name;
  if (fault.fate == Fate::taken) ++seen.taken;
  seen.refused = fault.fate == Fate::refused;
  return {fault.bytes(kind, body), fault.then};
}

}  // namespace kartix::test
