#pragma once

#include <functional>
#include <vector>

#include "adapters/windows/ui/KeyWatch.h"
#include "adapters/windows/ui/Window.h"
#include "platform/forms/Form.h"

namespace kartix::adapters::native {

/// The other windows of the thread take no input as long as this lives. What had the focus gets it back.
class OthersDisabled {
 public:
  explicit OthersDisabled(HWND window);
  ~OthersDisabled() { end(); }
  OthersDisabled(const OthersDisabled&) = delete;
  OthersDisabled& operator=(const OthersDisabled&) = delete;

  /// To be called while the window is still there: else the system gives the focus to another program's window.
  void end();

 private:
  std::vector<HWND> disabled_;
  HWND active_;
  HWND focus_;
};

/// The modal showing of one form to a clerk: its window, the form's view, and the loop that lasts until the form is
/// hidden.
class Showing : public forms::FormView {
 public:
  Showing(forms::Form& form, HWND owner, const bool& hourglass);
  ~Showing() override;
  Showing(const Showing&) = delete;
  Showing& operator=(const Showing&) = delete;

  forms::Form& form() const { return form_; }
  Window& window() { return window_; }

  /// Returns when the form is hidden. Messages go through `dispatch`.
  void run(const std::function<void(MSG&)>& dispatch);

  void controlChanged(const forms::Control& control, forms::Change what) override { window_.mirror(control, what); }
  void captionChanged() override { window_.mirrorCaption(); }
  void focusRequested(const forms::Control& control, bool selectAll) override { window_.focus(control, selectAll); }
  void formHidden() override;

 private:
  void loop(const std::function<void(MSG&)>& dispatch);
  void work(const std::function<void()>& handler);
  bool pass(const std::function<void()>& action);
  void startTimerSoon();
  void fireTimer();
  void end();

  forms::Form& form_;
  Window window_;
  DWORD thread_;
  OthersDisabled* others_ = nullptr;
};

}  // namespace kartix::adapters::native
