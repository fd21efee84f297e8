#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "dialogs/PasswordField.h"
#include "gateway/OperationExchange.h"
#include "gateway/OperationWindow.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix {

struct Workplace;

/// How the window of one operation is set up.
struct FrameTraits {
  std::string name;
  std::string caption;
  std::string action;            ///< caption of the button that sends
  std::int16_t cancelled = -1;   ///< `result` after "Abbrechen"
  bool traced = false;           ///< its routines write entry and exit to the trace
  bool actionIsDefault = false;  ///< Enter sends; only where the clerk is asked before anything goes out
};

/// What the windows of order, cancellation and notification share: a start-up that runs once the window is painted,
/// the two buttons, progress, password and the error list. The clerk can do nothing while the start-up or a driver
/// runs. The hourglass goes off on every way out.
class OperationFrame : public forms::Form, public OperationWindow {
 public:
  OperationFrame(Workplace& workplace, FrameTraits traits);
  ~OperationFrame() override;

  void ShowProgress(std::int16_t percent, std::string_view text, bool animate) override;
  std::string password() const override { return Password.password(); }
  void showErrorList(const std::string& summary, const std::string& list) override;

  std::int16_t result = -1;  ///< 1 when the operation was carried out

  PasswordField Password;
  forms::ControlArray<forms::Button> Button{*this, "Button", {0, 1}};
  forms::ProgressBar Progress{*this, "Progress"};
  forms::StatusBar StatusBar{*this, "StatusBar"};

 protected:
  /// Loads and checks what the operation needs and fills the window. False, with the clerk told why, ends it.
  virtual bool startup() = 0;
  /// The start-up is over and the buttons can be used: puts the focus where the clerk begins.
  virtual void ready() = 0;
  /// The clerk wants it sent. True when the operation was carried out.
  virtual bool send() = 0;

  void onLoad() override;
  void onCloseBox() override;
  void onFailure() override;

  Workplace& workplace() { return workplace_; }
  ExchangeContext exchange();

 private:
  class Routine;

  void timer();
  bool tracedStartup();
  void click(std::int16_t index);
  void enableForm(bool enabled);
  void wait(bool on);

  Workplace& workplace_;
  FrameTraits traits_;
  bool waiting_ = false;
  bool sending_ = false;
};

}  // namespace kartix
