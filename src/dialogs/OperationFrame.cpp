#include "dialogs/OperationFrame.h"

#include <utility>

#include "dialogs/BestellFehler.h"
#include "dialogs/Progress.h"
#include "dialogs/Workplace.h"
#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix {

/// Entry and exit of a routine in the trace, for the windows whose routines write any.
class OperationFrame::Routine {
 public:
  Routine(OperationFrame& frame, std::string_view routine)
      : trace_(frame.traits_.traced ? &frame.workplace_.runtime.trace : nullptr), name_(frame.name() + "::") {
    name_ += routine;
    if (trace_) trace_->TraceEnter(name_);
  }
  ~Routine() {
    if (trace_) trace_->TraceLeave(name_, result_);
  }
  Routine(const Routine&) = delete;
  Routine& operator=(const Routine&) = delete;

  void parameter(std::string_view name, std::int16_t value) {
    if (trace_) trace_->TraceParam(name, value);
  }
  bool leave(bool result) {
    result_ = result ? "True" : "False";
    return result;
  }

 private:
  Trace* trace_;
  std::string name_;
  std::string_view result_;
};

OperationFrame::OperationFrame(Workplace& workplace, FrameTraits traits)
    : Form(traits.name, traits.caption),
      Password(*this, workplace),
      workplace_(workplace),
      traits_(std::move(traits)) {
  Button[0].setText(traits_.action);
  Button[0].isDefault = traits_.actionIsDefault;
  Button[0].onClick = [this] { click(0); };
  Button[1].setText("Abbrechen");
  Button[1].onClick = [this] { click(1); };
  Timer1.onTimer = [this] { timer(); };
}

OperationFrame::~OperationFrame() {
  // A window that could not be shown has loaded, but never started.
  wait(false);
}

ExchangeContext OperationFrame::exchange() {
  return {workplace_.runtime, workplace_.session, workplace_.kba, workplace_.login, *this};
}

void OperationFrame::wait(bool on) {
  if (on == waiting_) return;
  waiting_ = on;
  workplace_.runtime.global.WaitCursor(on);
}

void OperationFrame::enableForm(bool enabled) {
  const Routine routine(*this, "enableForm");
  for (auto& [index, button] : Button) button->setEnabled(enabled);
}

void OperationFrame::onLoad() {
  const Routine routine(*this, "Form_Load");
  result = -1;
  workplace_.runtime.global.CenterForm(*this);
  Timer1.stop();
  Timer1.start();
  Progress.setValue(0);
  wait(true);
  enableForm(false);
  workplace_.runtime.machine.userInterface.repaint();
}

void OperationFrame::timer() {
  const Routine routine(*this, "Timer1_Timer");
  Timer1.stop();
  result = -1;
  if (!tracedStartup()) {
    wait(false);
    hide();
    return;
  }
  enableForm(true);
  ready();
  wait(false);
}

bool OperationFrame::tracedStartup() {
  Routine routine(*this, "startup");
  Password.showForOwnTransport();
  return routine.leave(startup());
}

void OperationFrame::click(std::int16_t index) {
  Routine routine(*this, "Button_Click");
  routine.parameter("Index", index);
  enableForm(false);
  if (index != 0) {
    result = traits_.cancelled;
    hide();
    return;
  }
  sending_ = true;
  const bool carriedOut = send();
  sending_ = false;
  if (!carriedOut) {
    enableForm(true);
    return;
  }
  result = 1;
  hide();
}

void OperationFrame::onCloseBox() {
  if (sending_) return;
  result = -1;
  hide();
}

void OperationFrame::onFailure() {
  result = -1;
  wait(false);
}

void OperationFrame::ShowProgress(std::int16_t percent, std::string_view text, bool animate) {
  showProgress(workplace_.runtime, {Progress, StatusBar}, percent, text, animate);
}

void OperationFrame::showErrorList(const std::string& summary, const std::string& list) {
  BestellFehler window(workplace_.runtime);
  window.Textbox[0].setText(summary);
  window.Textbox[1].setText(list);
  workplace_.runtime.showModal(window);
}

}  // namespace kartix
