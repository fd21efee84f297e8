#include "adapters/windows/ui/WindowHandle.h"

#include "adapters/windows/ui/CommonControls.h"

namespace kartix::adapters::native {
namespace {

constexpr const wchar_t* name = L"KartixWindow";

/// The class of our windows, as long as this code is loaded.
class WindowClass {
 public:
  explicit WindowClass(WNDPROC procedure) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof description;
    description.lpfnWndProc = procedure;
    description.hInstance = ownModule();
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
    description.lpszClassName = name;
    RegisterClassExW(&description);
  }
  ~WindowClass() { UnregisterClassW(name, ownModule()); }
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;
};

}  // namespace

const wchar_t* WindowHandle::className() {
  static const WindowClass registered(procedure);
  return name;
}

WindowHandle::WindowHandle(Listener& listener, DWORD style, DWORD extendedStyle, HWND owner) : listener_(listener) {
  // Large enough for the system to put all of its frame around it, which can be measured then.
  constexpr int large = 600;
  CreateWindowExW(extendedStyle, className(), L"", style, 0, 0, large, large, owner, nullptr, ownModule(), this);
}

WindowHandle::~WindowHandle() {
  if (!handle_) return;
  SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
  DestroyWindow(handle_);
}

LRESULT CALLBACK WindowHandle::procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
  if (message == WM_NCCREATE) {
    auto* const made = static_cast<WindowHandle*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
    made->handle_ = handle;
    SetWindowLongPtrW(handle, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made));
  }
  auto* const window = reinterpret_cast<WindowHandle*>(GetWindowLongPtrW(handle, GWLP_USERDATA));
  LRESULT result = 0;
  if (!window) return DefWindowProcW(handle, message, wParam, lParam);
  if (message == WM_NCDESTROY) {
    SetWindowLongPtrW(handle, GWLP_USERDATA, 0);
    window->handle_ = nullptr;
    if (window->listening_) window->listener_.gone();
  } else if (window->listening_ && window->listener_.hear(message, wParam, lParam, result)) {
    return result;
  }
  return DefWindowProcW(handle, message, wParam, lParam);
}

bool desktopIsVisible() {
  USEROBJECTFLAGS flags{};
  const HWINSTA station = GetProcessWindowStation();
  if (!station || GetUserObjectInformationW(station, UOI_FLAGS, &flags, sizeof flags, nullptr) == 0) return false;
  return (flags.dwFlags & WSF_VISIBLE) != 0;
}

}  // namespace kartix::adapters::native
