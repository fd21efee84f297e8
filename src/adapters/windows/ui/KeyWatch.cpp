#include "adapters/windows/ui/KeyWatch.h"

#include <algorithm>
#include <array>

#include "adapters/windows/ui/Window.h"

namespace kartix::adapters::native {
namespace {

bool isPress(UINT message) { return message == WM_KEYDOWN || message == WM_SYSKEYDOWN; }
bool isRelease(UINT message) { return message == WM_KEYUP || message == WM_SYSKEYUP; }
bool isMouse(UINT message) { return message >= WM_MOUSEFIRST && message <= WM_MOUSELAST; }

bool isModifier(WPARAM key) {
  constexpr std::array<WPARAM, 8> keys = {VK_SHIFT, VK_CONTROL, VK_MENU,    VK_LWIN,
                                          VK_RWIN,  VK_CAPITAL, VK_NUMLOCK, VK_SCROLL};
  return std::find(keys.begin(), keys.end(), key) != keys.end();
}

/// The key itself, whatever it means together with others: its scan code, where it has one.
std::uint32_t identity(const MSG& message) {
  const auto scanCode = static_cast<std::uint32_t>(message.lParam >> 16U) & 0x1FFU;
  return (scanCode & 0xFFU) != 0 ? scanCode : 0x10000U | static_cast<std::uint32_t>(message.wParam);
}

bool activates(const MSG& message) {
  constexpr std::array<WPARAM, 4> keys = {VK_RETURN, VK_SPACE, VK_ESCAPE, VK_F2};
  if (std::find(keys.begin(), keys.end(), message.wParam) != keys.end()) return true;
  const bool letter = message.wParam >= '0' && message.wParam <= 'Z';
  return message.message == WM_SYSKEYDOWN && (letter || message.wParam == VK_F4);
}

bool isTyped(const MSG& message, const Part* focus) {
  if (!focus) return false;
  if (message.wParam == VK_RETURN) return focus->takesLines();
  return message.wParam == VK_SPACE && message.message == WM_KEYDOWN && focus->takesText();
}

}  // namespace

void KeyWatch::note(const MSG& message) {
  if (!isPress(message.message) && !isRelease(message.message) && !isMouse(message.message)) return;
  const auto made = clock_.made(message.time);
  if (isMouse(message.message) || isModifier(message.wParam)) return;
  const std::uint32_t key = identity(message);
  if (isRelease(message.message)) return keyboard_.release(key, made);
  keyboard_.press(key, made, keyboard_.isDown(key, made));
}

bool KeyWatch::refuses(const MSG& message, const Window& window) const {
  if (!isPress(message.message) || !activates(message)) return false;
  return !(isTyped(message, window.focused()) ? keyboard_.types(window.readiness())
                                              : keyboard_.counts(window.readiness()));
}

}  // namespace kartix::adapters::native
