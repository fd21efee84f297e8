#pragma once

#include <cstdint>

#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

struct Workplace;

/// Shows the register's record of a card for the clerk to take over.
class ZKR : public forms::Form {
 public:
  explicit ZKR(Workplace& workplace);

  /// Fills the fields from the session's `ResultCard`.
  void ShowRecord();

  std::int16_t result = -1;  ///< 1 when the clerk takes the record over, else -1

  forms::ControlArray<forms::Label> Label{*this, "Label", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
  forms::ControlArray<forms::TextField> Text{*this, "Text", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}};
  forms::ControlArray<forms::TextField> MText{*this, "MText", {0}};
  forms::ControlArray<forms::Button> Button{*this, "Button", {0, 1}};

 protected:
  void onLoad() override;
  void onCloseBox() override { end(-1); }
  void onFailure() override { result = -1; }

 private:
  void end(std::int16_t outcome);

  Workplace& workplace_;
};

}  // namespace kartix
