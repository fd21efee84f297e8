#include "adapters/windows/ui/Showing.h"

#include <chrono>

namespace kartix::adapters::native {
namespace {

/// A window that nobody can see (on another desktop, say) is never painted; its form starts after this time.
constexpr unsigned unseenMs = 2000;

/// A handler that is done sooner changes nothing that a clerk could have waited for.
constexpr std::chrono::milliseconds noticeable{50};

struct Collected {
  HWND except;
  std::vector<HWND>* windows;
};

BOOL CALLBACK collect(HWND window, LPARAM to) noexcept {
  const auto& collected = *reinterpret_cast<const Collected*>(to);
  try {
    if (window != collected.except && IsWindowVisible(window) != FALSE && IsWindowEnabled(window) != FALSE)
      collected.windows->push_back(window);
  } catch (...) {
    return FALSE;
  }
  return TRUE;
}

}  // namespace

OthersDisabled::OthersDisabled(HWND window) : active_(GetActiveWindow()), focus_(GetFocus()) {
  Collected collected{window, &disabled_};
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&collected));
  for (const HWND other : disabled_) EnableWindow(other, FALSE);
}

void OthersDisabled::end() {
  for (const HWND other : disabled_) EnableWindow(other, TRUE);
  disabled_.clear();
  if (active_ && IsWindow(active_) != FALSE) SetActiveWindow(active_);
  if (focus_ && IsWindow(focus_) != FALSE) SetFocus(focus_);
  active_ = focus_ = nullptr;
}

Showing::Showing(forms::Form& form, HWND owner, const bool& hourglass)
    : form_(form), window_(form, owner, hourglass), thread_(GetCurrentThreadId()) {
  window_.takeInput([this](const std::function<void()>& action) { return pass(action); });
  window_.onPainted = [this] { startTimerSoon(); };
  window_.onTimer = [this](Window::Timer timer) {
    if (timer == Window::soon || timer == Window::unseen) fireTimer();
  };
  window_.onGone = [this] { end(); };
  form_.attach(this);
}

Showing::~Showing() { form_.attach(nullptr); }

void Showing::run(const std::function<void(MSG&)>& dispatch) {
  form_.markShown();
  OthersDisabled others(window_.handle());
  others_ = &others;
  struct Over {
    OthersDisabled*& others;
    ~Over() { others = nullptr; }
  } const over{others_};
  window_.centre();
  window_.show(true);
  window_.startTimer(Window::unseen, unseenMs);
  loop(dispatch);
}

void Showing::loop(const std::function<void(MSG&)>& dispatch) {
  MSG message{};
  while (form_.shown()) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got > 0) {
      dispatch(message);
      continue;
    }
    // The application is being ended under the window.
    end();
    if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
  }
}

/// Nobody can go on with the window.
void Showing::end() {
  if (!form_.shown()) return;
  form_.userClose();
  form_.hide();
}

void Showing::formHidden() {
  if (others_) others_->end();
  ShowWindow(window_.handle(), SW_HIDE);
  // The loop may be waiting for a message.
  PostThreadMessageW(thread_, WM_NULL, 0, 0);
}

void Showing::work(const std::function<void()>& handler) {
  const auto began = std::chrono::steady_clock::now();
  handler();
  if (std::chrono::steady_clock::now() - began >= noticeable) window_.markWorked();
}

bool Showing::pass(const std::function<void()>& action) {
  if (form_.busy() || !form_.shown()) return false;
  form_.protect([&] {
    work(action);
    startTimerSoon();
  });
  return true;
}

void Showing::startTimerSoon() {
  if (form_.Timer1.running()) window_.startTimer(Window::soon, USER_TIMER_MINIMUM);
}

void Showing::fireTimer() {
  if (!form_.shown() || form_.busy()) return;
  form_.protect([this] { work([this] { form_.firePaintedTimer(); }); });
}

}  // namespace kartix::adapters::native
