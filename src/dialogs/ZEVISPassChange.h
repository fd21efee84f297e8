#pragma once

#include <cstdint>
#include <string>

#include "gateway/Login.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

class Runtime;

/// Asks the clerk for the old and a new gateway password, and checks the new one.
class ZEVISPassChange : public forms::Form {
 public:
  explicit ZEVISPassChange(Runtime& runtime);

  /// Fills account and old password from the settings.
  void Prefill();
  const std::string& OldPassword() const { return Text[0].text(); }
  const std::string& NewPassword() const { return Text[1].text(); }

  std::int16_t result = -1;  ///< 1 after a confirmed, valid entry, else -1

  forms::ControlArray<forms::Label> Label{*this, "Label", {3, 0, 1, 2}};
  forms::ControlArray<forms::TextField> Text{*this, "Text", {3, 0, 1, 2}};
  forms::ControlArray<forms::Button> Button{*this, "Button", {0, 1}};
  forms::StatusBar StatusBar{*this, "StatusBar"};

 protected:
  void onLoad() override;
  void onCloseBox() override;
  void onFailure() override { result = -1; }

 private:
  void confirm();
  void cancel();
  bool complain(const char* message, forms::TextField& field, bool selectAll);
  bool checkEntries();

  Runtime& runtime_;
};

/// The login's way to that window.
class PasswordChangeWindow : public PasswordPrompt {
 public:
  explicit PasswordChangeWindow(Runtime& runtime) : runtime_(runtime) {}
  PasswordChange askNewPassword() override;

 private:
  Runtime& runtime_;
};

}  // namespace kartix
