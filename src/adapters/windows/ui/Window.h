#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "adapters/frontend/Keyboard.h"
#include "adapters/windows/ui/CommonControls.h"
#include "adapters/windows/ui/GdiPlus.h"
#include "adapters/windows/ui/Look.h"
#include "adapters/windows/ui/Part.h"
#include "adapters/windows/ui/WindowHandle.h"
#include "platform/forms/Form.h"

namespace kartix::adapters::native {

class CardPart;

/// The window of one form, with a native control for each control that its design has a widget for: `Text_3` for
/// `Text[3]`, `Progress` for `Progress`. It shows the form and, once `takeInput` is called, takes the clerk's input.
class Window final : private Listener {
 public:
  /// `hourglass` says at any time what the pointer is. Owned by `owner` if there is one.
  Window(forms::Form& form, HWND owner, const bool& hourglass);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  /// False when there is no design for the form, or no desktop.
  bool made() const { return window_.get() != nullptr && design_ != nullptr; }
  HWND handle() const { return window_.get(); }
  /// True for the window and its controls.
  bool owns(HWND handle) const;

  /// Takes the clerk's input, and lets it pass `pass` on its way to the form; False when it was kept back.
  void takeInput(std::function<bool(const std::function<void()>&)> pass);

  /// Shows everything of the form again.
  void mirrorAll();
  void mirrorCaption();
  void mirror(const forms::Control& control, forms::Change what);
  void focus(const forms::Control& control, bool selectAll);

  /// Centres the window on the primary screen, and brings it to the front when it is shown.
  void centre();
  void show(bool activate);
  /// Paints at once what has changed.
  void paintNow() const;

  const frontend::Readiness& readiness() const { return readiness_; }
  void markWorked();

  /// A message for the window, before it is dispatched: what the window itself makes of a key. True when that was
  /// all.
  bool takeKey(MSG& message);
  /// The same, once it has been dispatched.
  void dispatched(const MSG& message);
  /// The control that has the focus, if it is one of the window's.
  const Part* focused() const { return partOf(GetFocus()); }

  /// Timers that go off once.
  enum Timer : UINT_PTR { seen = 1, soon, unseen };
  void startTimer(Timer timer, unsigned milliseconds) const;
  std::function<void(Timer)> onTimer;
  /// Called after each painting.
  std::function<void()> onPainted;
  /// The window was destroyed by somebody else.
  std::function<void()> onGone;

 private:
  bool hear(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept override;
  void gone() noexcept override;
  bool answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
  bool notify(NMHDR& report, LRESULT& result);
  void limit(MINMAXINFO& limits) const;

  void build(const Element& element, const CardPart* card);
  void addTip(const Part& part);
  void order();
  void bindPartners();
  void assignAccelerators();
  void arrange();
  void place() const;
  Size frame() const;
  Layout layout() const;

  Part* partOf(HWND handle) const;
  Part* partOf(const forms::Control& control) const;
  Part* partOf(std::string_view widgetName) const;
  bool pressKey(const MSG& message);
  void pressEnter();
  void close();
  void restoreFocus();
  void moveFocus(HWND to);
  void step(HWND to);
  void mirrorEnabled(const Part& part, bool hadFocus);
  void painted();
  void timer(Timer timer);
  void rescale(int dpi, const RECT& suggested);

  forms::Form& form_;
  const bool& hourglass_;
  const Design* design_;
  GdiPlus gdiPlus_;
  CommonControls controls_;
  WindowHandle window_;
  Look look_;
  std::vector<std::unique_ptr<Part>> parts_;
  HWND tips_ = nullptr;
  std::wstring tip_;  ///< the one that is shown
  std::function<bool(const std::function<void()>&)> pass_;
  HWND focus_ = nullptr;      ///< has the focus whenever the window is active
  HWND lostFocus_ = nullptr;  ///< had the focus when it was disabled
  bool arranged_ = false;
  bool painted_ = false;
  frontend::Readiness readiness_;
  std::vector<std::string> captions_;  ///< those that the accelerators were chosen for
};

}  // namespace kartix::adapters::native
