#include "simulator/Answers.h"

#include <utility>

namespace kartix::simulator {
namespace {

Element head(std::string_view version) { return {"kopf", "", {{"vers", std::string(version)}, {"exver", "1.1.0"}}}; }

Element hint(std::string_view root, std::string_view version, int code, std::string_view text) {
  return {std::string(root),
          "",
          {head(version), {"hinweis", "", {{"retc", std::to_string(code)}, {"rett", std::string(text)}}}}};
}

}  // namespace

Kind kindOf(const Element& request) {
  if (request.name == "ZEVIS-LOGIN") return Kind::login;
  if (request.name == "zkr-anfrage") return Kind::inquiry;
  if (request.name == "zkr-mitteilung") return Kind::notification;
  if (request.name == "driverCard") return Kind::order;
  if (request.name == "orderCancellation") return Kind::cancellation;
  return Kind::unknown;
}

Element loginAnswer(int code, std::string_view text) {
  return {"ZEVIS-HINWEIS", "", {{"RETC", std::to_string(code)}, {"RETT", std::string(text)}}};
}

Element inquiryHint(int code, std::string_view text) { return hint("zkr-hinweis", "1.1", code, text); }

Element notificationHint(int code, std::string_view text) { return hint("zkr-mhinweis", "1.0", code, text); }

Element notificationErrors(const Element& request, int code, std::string_view text,
                           const std::vector<Fault>& faults) {
  Element record{"satz"};
  for (const char* const name : {"grumi", "stmit", "sbk25", "kgknr", "scode", "stime", "sdate", "stext"}) {
    record.children.push_back({name, request.value(name)});
  }
  record.children.push_back({"retc", std::to_string(code)});
  record.children.push_back({"rett", std::string(text)});
  Element list{"fehler"};
  for (const Fault& fault : faults) {
    list.children.push_back({"fehlerelem", "", {{"fhinw", fault.code}, {"ftext", fault.text}}});
  }
  return {"zkr-mitteilung", "", {head("1.0"), std::move(record), std::move(list)}};
}

Element information(int code, std::string_view text, const std::vector<Fault>& faults) {
  Element answer{"information",
                 "",
                 {{"head",
                   "",
                   {{"version", "1.0"},
                    {"externalVersion", "1.1.0"},
                    {"returnCode", std::to_string(code)},
                    {"returnText", std::string(text)}}}}};
  if (faults.empty()) return answer;
  Element list{"errorList"};
  for (const Fault& fault : faults) {
    list.children.push_back({"error", "", {{"errorCode", fault.code}, {"errorText", fault.text}}});
  }
  answer.children.push_back(std::move(list));
  return answer;
}

Element orderAccepted(std::string_view cardNumber) {
  Element answer = information(0, "Bestellung angenommen");
  answer.children.front().children.push_back({"cardNumber", std::string(cardNumber)});
  return answer;
}

Element refusal(const Element& request, int code, std::string_view text, const std::vector<Fault>& faults) {
  switch (kindOf(request)) {
    case Kind::login:
      return loginAnswer(code, text);
    case Kind::notification:
      return faults.empty() ? notificationHint(code, text) : notificationErrors(request, code, text, faults);
    case Kind::order:
    case Kind::cancellation:
      return information(code, text, faults);
    case Kind::inquiry:
    case Kind::unknown:
      break;
  }
  return inquiryHint(code, text);
}

Element notLoggedIn(const Element& request) {
  const Kind kind = kindOf(request);
  const bool personaliser = kind == Kind::order || kind == Kind::cancellation;
  return refusal(request, personaliser ? return_code::personaliserNotLoggedIn : return_code::registerNotLoggedIn,
                 "Sie sind nicht angemeldet.");
}

}  // namespace kartix::simulator
