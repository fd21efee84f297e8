#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "dialogs/PasswordField.h"
#include "gateway/Inquiry.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

struct Workplace;

/// The inquiry in the register: shows the person, lets the clerk choose what to search by, and runs the inquiry.
class StartForm : public forms::Form, public InquiryWindow {
 public:
  explicit StartForm(Workplace& workplace);

  void setProgress(std::int16_t value, const std::string& text, bool smooth) override;
  std::optional<std::string> chooseHit(const Hits& hits) override;

  std::int32_t result = -1;  ///< 1 when the clerk has taken over a register record, else -1

  forms::ControlArray<forms::Label> Label{*this, "Label", {0, 1, 2, 3, 4, 5, 7, 8}};
  forms::ControlArray<forms::TextField> Text{*this, "Text", {0, 1, 2, 3, 4, 5, 8, 9}};
  forms::ControlArray<forms::OptionButton> XPOption{*this, "XPOption", {0, 1, 2}};
  PasswordField Password;
  forms::ControlArray<forms::Button> Button{*this, "Button", {0, 2}};
  forms::ProgressBar Progress{*this, "Progress"};
  forms::StatusBar StatusBar{*this, "StatusBar"};

 protected:
  void onLoad() override;
  void onCloseBox() override { end(-1); }
  void onFailure() override;

 private:
  void label();
  void startUp();
  void Startup();
  void fill();
  void chooseSearch(int option);
  void start();
  void runInquiry();
  InquiryCriteria criteria() const;
  bool inquire();
  void confirmRecord();
  void end(std::int32_t outcome);

  Workplace& workplace_;
};

/// Runs the inquiry in its window, shown modally; gives the window's `result`.
std::int32_t runInquiry(Workplace& workplace);

}  // namespace kartix
