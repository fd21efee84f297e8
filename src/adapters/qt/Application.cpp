#include "adapters/qt/Application.h"

#include <QApplication>
#include <QStyleFactory>
#include <QThread>
#include <array>
#include <clocale>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>

#include "adapters/qt/Display.h"

namespace kartix::adapters::qt {
namespace {

/// While the application object is made, its remarks on the surroundings do not go to the host's standard error.
void onlyFatal(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtFatalMsg) std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

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
    const QtMessageHandler before = qInstallMessageHandler(onlyFatal);
    application_.emplace(count_, arguments_.data());
    qInstallMessageHandler(before);
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
