#pragma once

#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/forms/Control.h"

namespace kartix::forms {

/// A front end's mirror of one open form. It is told of changes after they have happened.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual void controlChanged(const Control& control, Change what) = 0;
  virtual void captionChanged() = 0;
  virtual void focusRequested(const Control& control, bool selectAll) = 0;
  /// The form has hidden itself: its modal showing is over once the running handler has returned.
  virtual void formHidden() = 0;
};

/// Timer that fires at most once after each start, when the window has been painted.
class OneShotTimer {
 public:
  std::function<void()> onTimer;
  void start() { running_ = true; }
  void stop() { running_ = false; }
  bool running() const { return running_; }

 private:
  bool running_ = false;
};

/// A window as a plain object: controls with values and handlers, no toolkit. A front end mirrors it.
///
/// Life: constructed, `load` once, shown by `UserInterface::showModal` until it is hidden, destroyed.
class Form {
 public:
  Form(std::string name, std::string caption);
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  /// Name of the window as scripts and front ends know it: "StartForm".
  const std::string& name() const { return name_; }
  const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);

  /// All controls in the order of their creation.
  const std::vector<Control*>& controls() const { return controls_; }
  /// The control called `name`, or nothing.
  Control* find(std::string_view name) const;

  /// Runs the load handler on the first call.
  void load();
  /// True from `markShown` until `hide`.
  bool shown() const { return shown_; }
  /// For the front end: the modal showing begins.
  void markShown() { shown_ = true; }
  void hide();

  /// For the front end: the window has been painted. Runs the timer's handler when it is running.
  void firePaintedTimer();
  /// For the front end: the clerk uses the close box (or Escape). What happens is the window's own.
  void userClose();

  /// Runs a handler. An exception ends the window with its failure value instead of leaving this function.
  void guard(const std::function<void()>& handler) noexcept;
  /// The same for what is no handler: the form is not busy while it runs.
  template <class Action>
  void protect(const Action& action) noexcept {
    try {
      action();
    } catch (const std::exception& error) {
      fail(error.what());
    } catch (...) {
      fail({});
    }
  }
  /// What went wrong; empty when nothing did.
  const std::string& failure() const { return failure_; }
  /// True while a handler runs.
  bool busy() const { return depth_ > 0; }

  void attach(FormView* view) { view_ = view; }
  FormView* view() const { return view_; }

  OneShotTimer Timer1;

 protected:
  virtual void onLoad() {}
  /// Close box: hides the window unless overridden.
  virtual void onCloseBox() { hide(); }
  /// Something failed before the window was hidden: set its failure value. The window is hidden afterwards. What has
  /// been decided by hiding stands, whatever fails later.
  virtual void onFailure() {}

 private:
  friend class Control;
  void add(Control* control) { controls_.push_back(control); }
  void fail(std::string_view reason) noexcept;

  std::string name_;
  std::string caption_;
  std::vector<Control*> controls_;
  std::string failure_;
  FormView* view_ = nullptr;
  int depth_ = 0;
  bool loaded_ = false;
  bool shown_ = false;
  bool decided_ = false;  ///< has been shown and hidden
};

}  // namespace kartix::forms
