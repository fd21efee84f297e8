#include "objects/Members.h"

#include "common/Text.h"
#include "common/Values.h"
#include "gateway/Answers.h"

namespace kartix::objects {

bool isAccount(std::string_view member) { return member == "SetDbeUser" || member == "SetDbePass"; }

std::string soleText(std::string_view member, const std::vector<platform::Value>& arguments) {
  if (arguments.size() == 1) return toText(arguments.front());
  throw platform::AutomationError("Falsche Anzahl an Argumenten: " + std::string(member));
}

void unknownMember(std::string_view member) {
  throw platform::AutomationError("Objekt unterstützt diese Eigenschaft oder Methode nicht: " + std::string(member));
}

std::string unknownAnswer(const std::string& kind) {
  return "ZEVIS hat einen unbekannten Datensatz geliefert (" + kind + ")";
}

std::string refusalText(const KbaAnswer& answer) {
  if (!answer.understood) return unknownAnswer(answer.kind);
  if (answer.code == 0) return {};
  std::string reason = std::to_string(answer.code) + ": " + answer.text;
  for (const AnswerError& error : answer.errors)
    reason.append("\r\n").append(error.code).append(": ").append(error.text);
  return reason;
}

}  // namespace kartix::objects
