#pragma once

#include "dialogs/OperationFrame.h"

namespace kartix {

/// The report of a change of a card's status: derives the register's code from the hand-in state of the operation's
/// record, lets the clerk edit the text, and sends it.
class Mitteilung : public OperationFrame {
 public:
  explicit Mitteilung(Workplace& workplace);

  forms::ControlArray<forms::Label> Label1{*this, "Label1", {0, 1, 2}};     ///< 1: card number
  forms::ControlArray<forms::TextField> Textbox{*this, "Textbox", {0, 1}};  ///< free text; status

 protected:
  bool startup() override;
  void ready() override { Textbox[0].setFocus(); }
  bool send() override;

 private:
  bool takeCode();
};

}  // namespace kartix
