#pragma once

#include "dialogs/OperationFrame.h"

namespace kartix {

/// The cancellation of an order: shows the card number of the operation's record, which must be one for a
/// cancellation, and sends it.
class fStorno : public OperationFrame {
 public:
  explicit fStorno(Workplace& workplace);

  forms::ControlArray<forms::Label> Label1{*this, "Label1", {0, 1}};  ///< caption, card number

 protected:
  bool startup() override;
  void ready() override;
  bool send() override;
};

}  // namespace kartix
