#pragma once

#include <QEventLoop>
#include <QTimer>
#include <functional>

#include "adapters/qt/Window.h"
#include "platform/forms/Form.h"

namespace kartix::adapters::qt {

/// The modal showing of one form to a clerk: its window, the form's view, and the loop that lasts until the form is
/// hidden.
class Showing : public forms::FormView {
 public:
  Showing(forms::Form& form, QWidget* parent);
  ~Showing() override;
  Showing(const Showing&) = delete;
  Showing& operator=(const Showing&) = delete;

  forms::Form& form() const { return form_; }
  Window& window() { return window_; }

  /// Returns when the form is hidden.
  void run();

  void controlChanged(const forms::Control& control, forms::Change what) override;
  void captionChanged() override { window_.mirrorCaption(); }
  void focusRequested(const forms::Control& control, bool selectAll) override { window_.focus(control, selectAll); }
  void formHidden() override;

 private:
  void work(const std::function<void()>& handler);
  bool pass(const std::function<void()>& action);
  void startTimerSoon();
  void fireTimer();

  forms::Form& form_;
  Window window_;
  QEventLoop loop_;
  QTimer soon_;    ///< fires the form's timer once the running events are done
  QTimer unseen_;  ///< fires it for a window that is never painted
};

}  // namespace kartix::adapters::qt
