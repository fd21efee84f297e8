// Hosts that keep their Kartix, and what they have of Qt, in different places. The first argument says which. Each
// runs one operation and says how many windows there were; the text must reach standard output from its buffer.
#include <kartix/Kartix.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>

namespace {

int windows = 0;

/// The clerk closes every window, whoever has made the application object.
void makeClerk() {
  auto* const timer = new QTimer(QCoreApplication::instance());
  QObject::connect(timer, &QTimer::timeout, timer, [] {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) return;
    if (QWidget* const window = QApplication::activeModalWidget()) {
      ++windows;
      window->close();
    }
  });
  timer->start(20);
}
Q_COREAPP_STARTUP_FUNCTION(makeClerk)

std::unique_ptr<kartix::Kartix> global;

void operate(kartix::Kartix& kartix) {
  const bool ready = kartix.init("Meier", "4711");
  const int result = kartix.ZKRAnfrage("1");
  std::printf("init %d, result %d, windows %d\n", ready, result, windows);
}

void makeGlobalAndOperate() {
  global = std::make_unique<kartix::Kartix>();
  operate(*global);
}

void operateOnStatic() {
  static kartix::Kartix kartix;
  operate(kartix);
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::string mode = argv[1];
  if (mode == "global") {
    makeGlobalAndOperate();
  } else if (mode == "static") {
    operateOnStatic();
  } else if (mode == "local, then QApplication") {
    kartix::Kartix kartix;
    const QApplication application(argc, argv);
    operate(kartix);
  } else if (mode == "global, then QApplication") {
    global = std::make_unique<kartix::Kartix>();
    const QApplication application(argc, argv);
    operate(*global);
  } else if (mode == "QApplication, then global") {
    const QApplication application(argc, argv);
    makeGlobalAndOperate();
  } else if (mode == "QApplication, then static") {
    const QApplication application(argc, argv);
    operateOnStatic();
  } else if (mode == "QCoreApplication") {
    const QCoreApplication application(argc, argv);
    makeGlobalAndOperate();
  } else if (mode == "worker") {
    const QApplication application(argc, argv);
    std::thread(makeGlobalAndOperate).join();
  } else if (mode == "second thread") {
    global = std::make_unique<kartix::Kartix>();
    std::thread([] { operate(*global); }).join();
  }
}
