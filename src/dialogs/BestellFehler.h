#pragma once

#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

class Runtime;

/// The errors with which the KBA refused an order, a cancellation or a notification. Who shows it fills the text
/// fields.
class BestellFehler : public forms::Form {
 public:
  explicit BestellFehler(Runtime& runtime);

  forms::Picture Picture1{*this, "Picture1"};
  forms::Label Label1{*this, "Label1"};
  forms::ControlArray<forms::TextField> Textbox{*this, "Textbox", {0, 1}};  ///< code and text; the list
  forms::Button Button{*this, "Button"};

 protected:
  void onLoad() override;

 private:
  Runtime& runtime_;
};

}  // namespace kartix
