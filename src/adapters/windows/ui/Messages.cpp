#include "adapters/windows/ui/Messages.h"

namespace kartix::adapters::native {
namespace {

/// Whoever sends messages all the time does not keep the program from its work.
constexpr int mostAtOnce = 1000;

/// Releases are let through, so that nothing stays pressed; a busy form ignores what follows from them.
bool isInput(UINT message) {
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
    case WM_CHAR:
    case WM_SYSCHAR:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONDBLCLK:
    case WM_MBUTTONDOWN:
    case WM_MBUTTONDBLCLK:
    case WM_XBUTTONDOWN:
    case WM_XBUTTONDBLCLK:
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
    case WM_NCRBUTTONDOWN:
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
    case WM_SYSCOMMAND:
    case WM_CLOSE:
      return true;
    default:
      return false;
  }
}

}  // namespace

void dispatchWithoutInput(KeyWatch* keys) {
  MSG message{};
  for (int i = 0; i < mostAtOnce && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; ++i) {
    if (message.message == WM_QUIT) {
      // For the loop that runs the windows, or the host's own.
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (keys) keys->note(message);
    if (isInput(message.message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace kartix::adapters::native
