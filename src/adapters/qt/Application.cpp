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
  }

  std::string name_ = "kartix";
  std::string option_ = "-platform";
  std::string platform_;
  int count_ = 3;
  std::array<char*, 4> arguments_{name_.data(), option_.data(), platform_.data(), nullptr};
  std::optional<QApplication> application_;
};

Application::Application(Fallback fallback) : fallback_(fallback) {}

Application::~Application() = default;

bool Application::ready() {
  if (const QCoreApplication* present = QCoreApplication::instance()) {
    return qobject_cast<const QApplication*>(present) && present->thread() == QThread::currentThread();
  }
  own_.reset();
  auto platform = usablePlatform();
  if (!platform && fallback_ == Fallback::offScreen) {
    // A desktop theme may insist on a display.
    qunsetenv("QT_QPA_PLATFORMTHEME");
    platform = "offscreen";
  }
  if (!platform) return false;
  own_ = std::make_unique<Own>(*platform);
  return true;
}

}  // namespace kartix::adapters::qt
