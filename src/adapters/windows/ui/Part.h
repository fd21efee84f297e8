#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "adapters/windows/ui/Design.h"
#include "adapters/windows/ui/Layout.h"
#include "adapters/windows/ui/Look.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"

namespace kartix::adapters::native {

/// Lets what a clerk does reach a form, or keeps it back while one of the form's handlers runs.
using Gate = std::function<void(const std::function<void()>& action)>;

/// One native control of a window. Most show a control of the form: its values go to the native control by `update`;
/// once input is taken, what the clerk does goes to the form's control.
class Part {
 public:
  Part(const Element& element, forms::Control* control, const Look& look);
  virtual ~Part() = default;
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  const Element& element() const { return element_; }
  const forms::Control* control() const { return control_; }
  HWND handle() const { return handle_; }

  /// Shows the control's values. Raises no event. Costs little when nothing has changed.
  void update();
  /// From now on the clerk's input goes through `gate` to the control.
  void takeInput(Gate gate) { gate_ = std::move(gate); }
  /// Takes over the look, which has changed.
  virtual void restyle();

  /// The room that all of its content needs; nothing when it is hidden.
  std::optional<Size> needed() const;
  virtual void place(const Box& box);

  /// The text that can carry an accelerator; empty when there is none.
  virtual std::string caption() const { return {}; }
  void setAccelerator(char letter);

  /// What the native control reports, by WM_COMMAND and by WM_NOTIFY.
  virtual void command(WORD /*code*/) {}
  virtual LRESULT notified(NMHDR& /*report*/) { return 0; }
  /// The control asks to be drawn.
  virtual void draw(const DRAWITEMSTRUCT& /*target*/) {}

  /// A click on it, or F2 for those who use the keyboard.
  virtual void click();
  /// Enter is pressed in it. False when that is none of its business.
  virtual bool enter() { return false; }
  /// Keys type a text here: Enter as well, or only the others.
  virtual bool takesText() const { return false; }
  virtual bool takesLines() const { return false; }
  /// A list has dropped down, and takes all keys.
  virtual bool isDropped() const { return false; }
  /// It only shows something.
  virtual bool isReadOnly() const { return false; }
  /// The clerk can do something in it now.
  bool takesInput() const;

 protected:
  /// Makes the native control.
  void make(const wchar_t* className, DWORD style, DWORD extendedStyle = 0);

  virtual void show() {}
  virtual Size natural() const { return {}; }
  /// The clerk does `action`.
  void act(const std::function<void()>& action);
  /// True while values are shown: what the native control reports then is none of the clerk's doing.
  bool showing() const { return showing_; }

  const Look& look() const { return look_; }
  /// Text of the control, or of the design where no control is shown.
  std::string content() const;
  std::wstring marked() const;
  void setText(const std::wstring& text) const;
  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;

 private:
  const Element& element_;
  forms::Control* control_;
  const Look& look_;
  HWND handle_ = nullptr;
  Gate gate_;
  char accelerator_ = 0;
  bool showing_ = false;
};

/// Text of a native control.
std::wstring textOf(HWND handle);

}  // namespace kartix::adapters::native
