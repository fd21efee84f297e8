#include "soak/FailingGateway.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

namespace kartix::test {
namespace {

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

/// What becomes of a message that is answered by a fault.
enum class Fate { taken, dropped, refused };

/// A way of failing.
struct Fault {
  const char* name;
  Fate fate;
  std::function<Reply(Kind, const std::string& accepted)> reply;
};

std::string chunked(const std::string& body, const std::string& end) {
  std::array<char, 16> size{};
  std::snprintf(size.data(), size.size(), "%zx", body.size());
  return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + std::string(size.data()) + "\r\n" + body + end;
}

/// `body` as large as it takes for the component to cut it.
std::string padded(const std::string& body) { return std::string(120000, ' ') + body; }

/// The same whatever is asked.
auto says(std::string bytes, Then then = Then::keepOpen) {
  return [reply = Reply{std::move(bytes), then}](auto, auto&) { return reply; };
}

const std::vector<Fault>& faults() {
  static const std::vector<Fault> list = {
      {"closes unanswered", Fate::dropped, says("", Then::close)},
      {"takes it and closes", Fate::taken, says("", Then::close)},
      {"resets after the request", Fate::taken, says("", Then::reset)},
      {"half a head", Fate::taken, says("HTTP/1.1 200 OK\r\nContent-", Then::close)},
      {"head without its end", Fate::taken, says("HTTP/1.1 200 OK\r\n", Then::close)},
      {"half a body", Fate::taken,
       [](auto, auto& body) {
         const std::string whole = answer(body);
         return Reply{whole.substr(0, whole.size() - body.size() / 2), Then::close};
       }},
      {"bad chunk", Fate::taken,
       [](auto, auto& body) {
         return Reply{chunked(body, "xx\r\n"), Then::close};
       }},
      {"no last chunk", Fate::taken,
       [](auto, auto& body) {
         return Reply{chunked(body, "\r\n"), Then::close};
       }},
      {"empty answer", Fate::taken, [](auto, auto&) { return Reply{answer("")}; }},
      {"no HTTP", Fate::taken,
       [](auto, auto& body) {
         return Reply{body, Then::close};
       }},
      {"no XML", Fate::dropped, [](auto, auto&) { return Reply{answer("Wartung")}; }},
      {"another message", Fate::dropped, [](auto, auto&) { return Reply{answer("<oops/>")}; }},
      {"status 099", Fate::taken,
       [](auto, auto& body) {
         return Reply{answer(body, "099 OK"), Then::close};
       }},
      {"404", Fate::refused, [](auto, auto&) { return Reply{answer("", "404 Not Found")}; }},
      {"500", Fate::dropped, [](auto, auto&) { return Reply{answer("", "500 Internal Server Error")}; }},
      {"takes it and answers 500", Fate::taken,
       [](auto, auto& body) { return Reply{answer(body, "500 Internal Server Error")}; }},
      {"refuses", Fate::refused, [](Kind kind, auto&) { return Reply{answer(refused(kind, "17", false))}; }},
      {"refuses with a list", Fate::refused,
       [](Kind kind, auto&) { return Reply{answer(refused(kind, "17", true))}; }},
      {"no card number", Fate::taken,
       [](Kind kind, auto& body) {
         return Reply{answer(kind == Kind::order ? accepted(Kind::cancellation, 0) : body)};
       }},
      {"large", Fate::taken, [](auto, auto& body) { return Reply{answer(padded(body))}; }},
      {"slow", Fate::taken,
       [](auto, auto& body) {
         std::this_thread::sleep_for(std::chrono::milliseconds(50));
         return Reply{answer(body)};
       }},
      {"says nothing", Fate::taken, says("", Then::hang)},
  };
  return list;
}

}  // namespace

FailingGateway::FailingGateway(unsigned seed)
    : random_(seed), server_([this](const RecordedRequest& request) { return replyTo(request); }) {}

std::string FailingGateway::cardNumber(std::size_t number) { return "DF0000000" + std::to_string(1000000 + number); }

std::string FailingGateway::newCardNumber(std::size_t number) {
  return "DF0000000" + std::to_string(2000000 + number);
}

void FailingGateway::expect(std::size_t number, Kind kind) {
  const std::scoped_lock lock(mutex_);
  current_ = number;
  kinds_[number] = kind;
}

std::map<std::size_t, Seen> FailingGateway::seen() {
  const std::scoped_lock lock(mutex_);
  return seen_;
}

std::map<std::string, int> FailingGateway::faults() {
  const std::scoped_lock lock(mutex_);
  return faults_;
}

Reply FailingGateway::replyTo(const RecordedRequest& request) {
  const std::scoped_lock lock(mutex_);
  if (request.head.starts_with("POST /anmeldung ")) return logIn();
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
  if (known && random_() % 50 != 0) return carryOut(kind, number, seen);
  seen.asked = seen.refused = true;
  ++faults_["login asked for"];
  return {loginWanted(kind)};
}

Reply FailingGateway::logIn() {
  if (failsNow()) return faults_["login fails"]++, Reply{"", Then::close};
  const std::string session = std::to_string(random_());
  sessions_.insert(session);
  return {answer("<ZEVIS-HINWEIS><RETC>0</RETC></ZEVIS-HINWEIS>", "200 OK",
                 "Set-Cookie: kba.session=" + session + "\r\nSet-Cookie: JServSessionIdroot=x\r\n")};
}

Reply FailingGateway::carryOut(Kind kind, std::size_t number, Seen& seen) {
  const std::string body = accepted(kind, number);
  if (!failsNow()) {
    ++seen.taken;
    return {answer(body)};
  }
  const std::vector<Fault>& all = test::faults();
  const Fault& fault = all[nextFault_++ % all.size()];
  ++faults_[fault.name];
  seen.fault = fault.name;
  if (fault.fate == Fate::taken) ++seen.taken;
  seen.refused = fault.fate == Fate::refused;
  return fault.reply(kind, body);
}

}  // namespace kartix::test
