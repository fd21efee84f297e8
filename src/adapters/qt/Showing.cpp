#include "adapters/qt/Showing.h"

#include <chrono>

namespace kartix::adapters::qt {
namespace {

/// A window that nobody can see (on another workspace, say) is never painted; its form starts after this time.
constexpr std::chrono::seconds unseen{2};

/// A handler that is done sooner changes nothing that a clerk could have waited for.
constexpr std::chrono::milliseconds noticeable{50};

}  // namespace

Showing::Showing(forms::Form& form, QWidget* parent) : form_(form), window_(form, parent) {
  for (QTimer* const timer : {&soon_, &unseen_}) {
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, &window_, [this] { fireTimer(); });
  }
  unseen_.setInterval(unseen);
  window_.takeInput([this](const std::function<void()>& action) { return pass(action); });
  window_.onPainted = [this] { form_.protect([this] { startTimerSoon(); }); };
  form_.attach(this);
}

Showing::~Showing() {
  window_.onPainted = nullptr;
  form_.attach(nullptr);
}

void Showing::run() {
  form_.markShown();
  window_.centre();
  window_.show();
  window_.comeForward();
  unseen_.start();
  while (form_.shown()) {
    loop_.exec();
    if (!form_.shown()) break;
    // The application is being ended under the window.
    form_.userClose();
    form_.hide();
  }
}

void Showing::controlChanged(const forms::Control& control, forms::Change) { window_.mirror(control); }

void Showing::formHidden() {
  loop_.quit();  // first, whatever becomes of the window
  window_.hide();
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
  if (form_.Timer1.running() && !soon_.isActive()) soon_.start();
}

void Showing::fireTimer() {
  if (!form_.shown() || form_.busy()) return;
  form_.protect([this] { work([this] { form_.firePaintedTimer(); }); });
}

}  // namespace kartix::adapters::qt
