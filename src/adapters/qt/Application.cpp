#include "adapters/qt/Application.h"

#include <QApplication>
#include <QStyleFactory>
#include <QThread>
#include <array>
#include <clocale>
#include <optional>
#include <string>
#include <utility>

#include "adapters/qt/Display.h"
#include "adapters/qt/Scale.h"
#include "adapters/qt/Silence.h"

namespace kartix::adapters::qt {
namespace {

/// Making the application object takes over the user's locale; the host's numbers must stay as they were.
class LocaleKept {
 public:
  LocaleKept() : before_(std::setlocale(LC_ALL, nullptr)) {}
  ~LocaleKept() { std::setlocale(LC_ALL, before_.c_str()); }
  LocaleKept(const LocaleKept&) = delete;
  LocaleKept& operator=(const LocaleKept&) = delete;

 private:
  std::string before_;
};

}  // namespace

/// The application object with the arguments that it refers to for life.
struct Application::Own {
  explicit Own(std::string platform) : platform_(std::move(platform)) {
    const LocaleKept kept;
    {
      // Its remarks on the surroundings are nothing for the host's standard error.
      const Silence silence;
      application_.emplace(count_, arguments_.data());
    }
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setQuitOnLastWindowClosed(false);
    if (!visiblePlatform(platform_)) QApplication::setFont(designFont(designPoints));
  }

  std::string name_ = "kartix";
  std::string option_ = "-platform";
  std::string platform_;
  int count_ = 3;
  std::array<char*, 4> arguments_{name_.data(), option_.data(), platform_.data(), nullptr};
  std::optional<QApplication> application_;
};

Application::Application(Fallback fallback) : fallback_(fallback) {}

Application::~Application() { release(); }

bool Application::release() {
  if (!own_) return false;
  // When the host has made one of its own meanwhile, that one stands on what ours has made.
  if (QCoreApplication::instance() != &*own_->application_) static_cast<void>(own_.release());
  own_.reset();
  return true;
}

std::optional<Application::ShowResult> Application::obstacle() {
  if (const QCoreApplication* present = QCoreApplication::instance()) {
    if (present->thread() != QThread::currentThread()) return ShowResult::otherThread;
    if (!qobject_cast<const QApplication*>(present)) return ShowResult::noWidgets;
    return std::nullopt;
  }
  auto platform = usablePlatform();
  if (!platform && fallback_ == Fallback::offScreen) {
    // A desktop theme may insist on a display.
    qunsetenv("QT_QPA_PLATFORMTHEME");
    platform = "offscreen";
  }
  if (!platform) return ShowResult::noDisplay;
  own_ = std::make_unique<Own>(*platform);
  return std::nullopt;
}

}  // namespace kartix::adapters::qt
