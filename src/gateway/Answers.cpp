#include "gateway/Answers.h"

#include "common/Numbers.h"
#include "common/Text.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "gateway/OperationWindow.h"
#include "platform/XmlLibrary.h"
#include "runtime/Reporting.h"

namespace kartix {
namespace {

constexpr std::string_view lineBreak = "\r\n";

bool has(const platform::XmlDocument& document, std::string_view xpath) {
  return document.selectSingleNode(xpath) != nullptr;
}

std::vector<AnswerError> readErrors(const platform::XmlDocument& document, std::string_view entries,
                                    std::string_view codeName, std::string_view textName) {
  std::vector<AnswerError> errors;
  for (platform::XmlNode entry : document.selectNodes(entries)) {
    const auto field = [&](std::string_view name) {
      const auto found = document.children(entry, name);
      return found.empty() ? std::string() : document.nodeText(found.front());
    };
    errors.push_back({field(codeName), field(textName)});
  }
  return errors;
}

/// Return codes with which the register counts the hits instead of refusing.
bool countsHits(double code) {
  constexpr double first = 200;
  constexpr double last = 299;
  return code == 0 || (code >= first && code <= last);
}

}  // namespace

InquiryAnswer readInquiryAnswer(const platform::XmlDocument& document) {
  using Kind = InquiryAnswer::Kind;
  InquiryAnswer answer;
  answer.root = rootName(document);
  if (answer.root == "zkr-auskunft") answer.kind = Kind::record;
  if (answer.root == "zkr-trefferliste") answer.kind = Kind::list;
  const bool echo = answer.root == "zkr-anfrage";
  if (!echo && answer.root != "zkr-hinweis") return answer;
  answer.code = firstText(document, "//retc");
  answer.text = firstText(document, "//rett");
  if (echo && countsHits(leadingNumber(answer.code))) {
    answer.kind = Kind::count;
    answer.hits = leadingInt32(firstText(document, "//anzt"));
  } else {
    answer.kind = leadingInt32(answer.code) == login_result::notLoggedIn ? Kind::notLoggedIn : Kind::refusal;
  }
  return answer;
}

KbaAnswer readInformation(const platform::XmlDocument& document, CardNumber cardNumber) {
  KbaAnswer answer;
  answer.kind = rootName(document);
  if (answer.kind != "information" || !has(document, "//head//returnCode")) return answer;
  answer.code = leadingInt32(firstText(document, "//head//returnCode"));
  answer.text = firstText(document, "//head//returnText");
  if (cardNumber == CardNumber::expected && answer.code == 0) {
    if (!has(document, "//head//cardNumber")) return answer;
    answer.cardNumber = firstText(document, "//head//cardNumber");
  }
  answer.errors = readErrors(document, "//errorList//error", "errorCode", "errorText");
  answer.understood = true;
  return answer;
}

KbaAnswer readNotificationReply(const platform::XmlDocument& document) {
  KbaAnswer answer;
  answer.kind = rootName(document);
  if (answer.kind == "zkr-mhinweis") {
    answer.code = leadingInt32(firstText(document, "//zkr-mhinweis//retc"));
    answer.text = firstText(document, "//zkr-mhinweis//rett");
  } else if (answer.kind == "zkr-mitteilung") {
    answer.code = leadingInt32(firstText(document, "//zkr-mitteilung//satz//retc"));
    answer.text = firstText(document, "//zkr-mitteilung//satz//rett");
    answer.errors = readErrors(document, "//zkr-mitteilung//fehler//fehlerelem", "fhinw", "ftext");
  } else {
    return answer;
  }
  answer.understood = true;
  return answer;
}

std::string errorListText(const KbaAnswer& answer) {
  std::string list;
  for (const AnswerError& error : answer.errors) {
    list.append(error.code).append(lineBreak).append(error.text).append(lineBreak).append(lineBreak);
  }
  return list;
}

void reportAnswer(Reporting& reporting, OperationWindow& window, const KbaAnswer& answer) {
  const std::string code = std::to_string(answer.code);
  if (!answer.understood) {
    reporting.ReportError(201, answer.kind);
  } else if (answer.errors.empty()) {
    reporting.ReportError(203, code, answer.text);
  } else {
    window.showErrorList(code + std::string(lineBreak) + answer.text, errorListText(answer));
  }
}

}  // namespace kartix
