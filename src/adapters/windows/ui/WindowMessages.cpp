// What a window makes of the messages that it gets.
#include "adapters/windows/ui/ButtonParts.h"
#include "adapters/windows/ui/DrawnParts.h"
#include "adapters/windows/ui/Text16.h"
#include "adapters/windows/ui/Window.h"

namespace kartix::adapters::native {
namespace {

bool isKey(UINT message) { return message >= WM_KEYFIRST && message <= WM_KEYLAST; }

/// Which of a window's tips is shown: that of the design, or a text that is not seen as a whole.
void tell(const Part& part, NMTTDISPINFOW& asked, std::wstring& kept) {
  const auto* const text = dynamic_cast<const CardTextPart*>(&part);
  kept = text ? text->hidden() : std::wstring();
  if (kept.empty()) kept = wide(part.element().tip);
  asked.lpszText = kept.data();
}

}  // namespace

bool Window::hear(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept {
  bool answered = false;
  form_.protect([&] { answered = answer(message, wParam, lParam, result); });
  return answered;
}

void Window::gone() noexcept {
  form_.protect([this] {
    if (onGone) onGone();
  });
}

bool Window::answer(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case WM_COMMAND:
      if (Part* const part = partOf(reinterpret_cast<HWND>(lParam))) part->command(HIWORD(wParam));
      return true;
    case WM_NOTIFY:
      return notify(*reinterpret_cast<NMHDR*>(lParam), result);
    case WM_DRAWITEM: {
      const auto& target = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (Part* const part = partOf(target.hwndItem)) part->draw(target);
      result = TRUE;
      return true;
    }
    case WM_PAINT:
      DefWindowProcW(handle(), message, wParam, lParam);
      painted();
      return true;
    case WM_TIMER:
      timer(static_cast<Timer>(wParam));
      return true;
    case WM_CLOSE:
      close();
      return true;
    case WM_ACTIVATE:
      if (LOWORD(wParam) != WA_INACTIVE)
        restoreFocus();
      else if (partOf(GetFocus()))
        focus_ = GetFocus();
      return true;
    case WM_NEXTDLGCTL:
      step(lParam == FALSE ? GetNextDlgTabItem(handle(), GetFocus(), static_cast<BOOL>(wParam))
                           : reinterpret_cast<HWND>(wParam));
      return true;
    case WM_SETCURSOR:
      if (!hourglass_) return false;
      SetCursor(LoadCursorW(nullptr, IDC_WAIT));
      result = TRUE;
      return true;
    case WM_SIZE:
      if (!design_->fixed && !parts_.empty()) place();
      return true;
    case WM_GETMINMAXINFO:
      limit(*reinterpret_cast<MINMAXINFO*>(lParam));
      return true;
    case WM_DPICHANGED:
      rescale(LOWORD(wParam), *reinterpret_cast<const RECT*>(lParam));
      return true;
    default:
      return false;
  }
}

bool Window::notify(NMHDR& report, LRESULT& result) {
  if (report.code == TTN_GETDISPINFOW) {
    if (const Part* const part = partOf(reinterpret_cast<HWND>(report.idFrom)))
      tell(*part, reinterpret_cast<NMTTDISPINFOW&>(report), tip_);
    return true;
  }
  Part* const part = partOf(report.hwndFrom);
  if (!part) return false;
  result = part->notified(report);
  return true;
}

void Window::limit(MINMAXINFO& limits) const {
  if (design_->fixed || parts_.empty()) return;
  const Size needed = layout().needed();
  const Size around = frame();
  limits.ptMinTrackSize = {needed.width + around.width, needed.height + around.height};
}

bool Window::takeKey(MSG& message) {
  if (!isKey(message.message)) return false;
  const Part* const part = partOf(message.hwnd);
  if (part && part->isDropped()) return message.message == WM_CHAR;
  if (message.message == WM_KEYDOWN && pressKey(message)) return true;
  if (part && part->takesLines())
    return message.message == WM_SYSCHAR && IsDialogMessageW(handle(), &message) != FALSE;
  // Letters reach a control together with Alt only, and a closed list takes none.
  if (message.message == WM_CHAR) return !part || !(part->takesText() || part->element().kind == Kind::list);
  return IsDialogMessageW(handle(), &message) != FALSE;
}

/// What Enter, Escape, F2 and the tab key do in a window. True when nobody else is to hear of it.
bool Window::pressKey(const MSG& message) {
  Part* const part = partOf(message.hwnd);
  switch (message.wParam) {
    case VK_RETURN:
      if (part && part->takesLines()) return false;
      if (!part || !part->enter()) pressEnter();
      return true;
    case VK_ESCAPE:
      close();
      return true;
    case VK_F2:
      if (part) part->click();
      return true;
    case VK_TAB:
      if (GetKeyState(VK_CONTROL) < 0) return false;
      step(GetNextDlgTabItem(handle(), GetFocus(), GetKeyState(VK_SHIFT) < 0));
      return true;
    default:
      return false;
  }
}

/// Enter presses the button that has the focus, else the form's default button.
void Window::pressEnter() {
  auto* button = dynamic_cast<ButtonPart*>(partOf(GetFocus()));
  for (const auto& part : parts_) {
    if (button) break;
    auto* const candidate = dynamic_cast<ButtonPart*>(part.get());
    if (candidate && candidate->isDefault()) button = candidate;
  }
  if (button && IsWindowVisible(button->handle()) != FALSE) button->press();
}

/// Moves the focus as the tab key does.
void Window::step(HWND to) {
  if (!to) return;
  lostFocus_ = nullptr;
  SetFocus(to);
  if ((SendMessageW(to, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0) SendMessageW(to, EM_SETSEL, 0, -1);
}

/// Escape and the close box: both are the form's to decide on.
void Window::close() {
  if (!pass_) return;
  form_.protect([this] { pass_([this] { form_.userClose(); }); });
}

void Window::dispatched(const MSG& message) {
  if (message.message == WM_LBUTTONDOWN) lostFocus_ = nullptr;
  if (message.message != WM_LBUTTONUP) return;
  Part* const part = partOf(message.hwnd);
  RECT inside{};
  if (!part || GetClientRect(part->handle(), &inside) == FALSE) return;
  POINT at = message.pt;
  ScreenToClient(part->handle(), &at);
  if (PtInRect(&inside, at) != FALSE) part->click();
}

}  // namespace kartix::adapters::native
