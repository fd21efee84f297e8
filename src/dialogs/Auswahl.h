#pragma once

#include <cstdint>
#include <string>

#include "gateway/Inquiry.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

struct Workplace;

/// Lets the clerk choose one of several hits.
class Auswahl : public forms::Form {
 public:
  explicit Auswahl(Workplace& workplace);

  /// Shows the hits. Postcode and place stand in one column.
  void FillList(const Hits& hits);

  std::int16_t result = -1;  ///< 0 when a card was chosen, else -1
  std::string SelectedCard;  ///< its number

  forms::ListView Liste{*this, "Liste"};

 protected:
  void onLoad() override;
  void onCloseBox() override;
  void onFailure() override { result = -1; }

 private:
  void choose();

  Workplace& workplace_;
};

}  // namespace kartix
