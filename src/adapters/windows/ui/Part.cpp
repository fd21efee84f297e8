#include "adapters/windows/ui/Part.h"

#include "adapters/frontend/Accelerators.h"
#include "adapters/windows/ui/CommonControls.h"
#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {

Part::Part(const Element& element, forms::Control* control, const Look& look)
    : element_(element), control_(control), look_(look) {}

void Part::make(const wchar_t* className, DWORD style, DWORD extendedStyle) {
  handle_ = CreateWindowExW(extendedStyle, className, L"", WS_CHILD | style, 0, 0, 0, 0, look_.window(), nullptr,
                            ownModule(), nullptr);
  restyle();
  if (!control_) ShowWindow(handle_, SW_SHOWNA);
}

void Part::restyle() { send(WM_SETFONT, reinterpret_cast<WPARAM>(look_.font())); }

void Part::update() {
  showing_ = true;
  struct Quiet {
    bool& showing;
    ~Quiet() { showing = false; }
  } const quiet{showing_};
  if (control_) {
    if ((IsWindowEnabled(handle_) != FALSE) != control_->enabled()) EnableWindow(handle_, control_->enabled());
    const bool visible = (GetWindowLongW(handle_, GWL_STYLE) & WS_VISIBLE) != 0;
    if (visible != control_->visible()) ShowWindow(handle_, control_->visible() ? SW_SHOWNA : SW_HIDE);
  }
  show();
}

std::optional<Size> Part::needed() const {
  if (control_ && !control_->visible()) return std::nullopt;
  return natural();
}

void Part::place(const Box& box) {
  SetWindowPos(handle_, nullptr, box.left, box.top, box.width, box.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void Part::setAccelerator(char letter) {
  accelerator_ = letter;
  update();
}

void Part::click() {
  if (control_ && control_->onClick) act([this] { control_->userClick(); });
}

bool Part::takesInput() const {
  return !isReadOnly() && IsWindowVisible(handle_) != FALSE && IsWindowEnabled(handle_) != FALSE &&
         (GetWindowLongW(handle_, GWL_STYLE) & WS_TABSTOP) != 0;
}

void Part::act(const std::function<void()>& action) {
  if (gate_ && !showing_) gate_(action);
}

std::string Part::content() const { return control_ ? control_->text() : std::string(element_.text); }

std::wstring Part::marked() const { return wide(frontend::withAccelerator(content(), accelerator_)); }

void Part::setText(const std::wstring& text) const {
  if (textOf(handle_) != text) SetWindowTextW(handle_, text.c_str());
}

LRESULT Part::send(UINT message, WPARAM wParam, LPARAM lParam) const {
  return SendMessageW(handle_, message, wParam, lParam);
}

std::wstring textOf(HWND handle) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(handle)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(handle, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace kartix::adapters::native
