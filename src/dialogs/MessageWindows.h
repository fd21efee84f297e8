#pragma once

#include "runtime/Reporting.h"

namespace kartix {

class Runtime;

/// Shows the messages of the component in the windows `MessageBox` and `SystemMessageBox`.
class MessageWindows : public MessageWindow {
 public:
  explicit MessageWindows(Runtime& runtime) : runtime_(runtime) {}

  std::int16_t showMessage(const Message& message) override;
  void showSystemMessage(std::string_view text, std::string_view caption) override;

 private:
  Runtime& runtime_;
};

}  // namespace kartix
