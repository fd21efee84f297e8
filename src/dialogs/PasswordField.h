#pragma once

#include <functional>

#include "platform/forms/Control.h"

namespace kartix {

struct Workplace;

/// The field `ZEVISPass` of an operation's window with its label: hidden until `show`, masked, and changed only
/// through the password change window, which a click on it opens.
class PasswordField {
 public:
  PasswordField(forms::Form& form, Workplace& workplace);

  /// Shows label and field when the exchanges go over the component's own transport.
  void showForOwnTransport();
  /// Puts the stored gateway password into the field.
  void fill();
  const std::string& password() const { return ZEVISPass.text(); }

  /// Told when the clerk cancelled the change.
  std::function<void()> onCancelled;

  forms::Label Label9;
  forms::TextField ZEVISPass;

 private:
  void change();

  Workplace& workplace_;
};

}  // namespace kartix
