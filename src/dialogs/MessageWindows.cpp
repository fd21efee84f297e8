#include "dialogs/MessageWindows.h"

#include "dialogs/MessageBox.h"
#include "runtime/Runtime.h"

namespace kartix {

std::int16_t MessageWindows::showMessage(const Message& message) {
  MessageBox box(runtime_);
  box.load();
  box.setCaption(message.caption);
  box.Label1.setText(message.text);
  box.Setup(message.buttons, message.icon, message.caption1, message.caption2);
  runtime_.showModal(box);
  return box.result;
}

void MessageWindows::showSystemMessage(std::string_view text, std::string_view caption) {
  SystemMessageBox box{std::string(caption), std::string(text)};
  runtime_.showModal(box);
}

}  // namespace kartix
