#pragma once

#include "dialogs/OperationFrame.h"

namespace kartix {

/// The order of a driver card: makes photo and signature ready, shows the future card, lets the clerk choose how it
/// is ordered, and sends the order once the clerk has confirmed it. `result` is 0 after "Abbrechen".
class Bestellung : public OperationFrame {
 public:
  explicit Bestellung(Workplace& workplace);

  /// Background of the card.
  forms::Picture Image1{*this, "Image1"};
  forms::Picture Line1{*this, "Line1"};
  forms::Picture Line2{*this, "Line2"};
  forms::ControlArray<forms::Label> Label1{*this, "Label1", {0, 1, 2, 3, 4, 5, 6, 7, 8}};  ///< field numbers
  forms::ControlArray<forms::Label> Label2{*this, "Label2", {0, 1, 2, 3, 4, 5, 6, 7}};     ///< fields
  forms::ControlArray<forms::Picture> Bild{*this, "Bild", {0, 1}};                         ///< photo, signature
  /// Complaint, order kind, delivery kind.
  forms::ControlArray<forms::ComboBox> Combo{*this, "Combo", {0, 1, 2}};

 protected:
  bool startup() override;
  void ready() override { Combo[0].setFocus(); }
  bool send() override;

 private:
  bool convertImages();
  void fill();
  bool checkInput();
};

}  // namespace kartix
