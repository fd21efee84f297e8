#include "soak/Clerk.h"

#include <map>

#include "platform/forms/Control.h"

namespace kartix::test {
namespace {

/// What starts the operation of a window.
const std::map<std::string, std::string> starters = {{"StartForm", "Button[0]"},  {"ZKR", "Button[0]"},
                                                     {"Bestellung", "Button[0]"}, {"fStorno", "Button[0]"},
                                                     {"Mitteilung", "Button[0]"}, {"ZEVISPassChange", "Button[0]"}};

void start(forms::Form& form, const std::string& button, const std::string& newPassword) {
  for (const char* const field : {"Text[1]", "Text[2]"}) {
    if (form.name() == "ZEVISPassChange") dynamic_cast<forms::TextField&>(*form.find(field)).userEdit(newPassword);
  }
  if (auto* const kind = dynamic_cast<forms::ComboBox*>(form.find("Combo[0]"))) kind->userSelect(0);
  form.find(button)->userClick();
}

}  // namespace

platform::UserInterface::ShowResult Clerk::showModal(forms::Form& form) {
  form.markShown();
  form.firePaintedTimer();
  for (bool first = true; form.shown(); first = false) {
    const auto starter = starters.find(form.name());
    if (form.name() == "MessageBox") {
      answer(form);
    } else if (first && starter != starters.end()) {
      const bool changes = form.name() == "StartForm" && !newPassword_.empty();
      start(form, changes ? "ZEVISPass" : starter->second, newPassword_);
    } else {
      form.userClose();
    }
    form.firePaintedTimer();
  }
  return ShowResult::ended;
}

void Clerk::answer(forms::Form& message) {
  messages_.push_back(message.caption() + "|" + message.find("Label1")->text());
  for (const char* const name : {"Button[0]", "Button[1]", "Button[2]"}) {
    forms::Control* const button = message.find(name);
    if (!button->visible()) continue;
    button->userClick();
    return;
  }
}

}  // namespace kartix::test
