#include "adapters/qt/Silence.h"

#include <atomic>
#include <thread>

namespace kartix::adapters::qt {

/// Qt knows one message handler for the whole process.
struct Silence::Process {
  std::mutex only;
  std::atomic<QtMessageHandler> before = nullptr;
  std::atomic<std::thread::id> silent;
  QString said;  ///< of the silent thread only
};

Silence::Process& Silence::process() {
  static Process process;
  return process;
}

Silence::Silence() : only_(process().only) {
  process().said.clear();
  process().silent = std::this_thread::get_id();
  process().before = qInstallMessageHandler(hear);
}

Silence::~Silence() {
  const QtMessageHandler present = qInstallMessageHandler(process().before);
  // A handler that the host has installed meanwhile stays.
  if (present != hear) qInstallMessageHandler(present);
  process().silent = std::thread::id();
}

void Silence::hear(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  if (type != QtFatalMsg && process().silent.load() == std::this_thread::get_id()) {
    try {
      process().said += text + QLatin1Char('\n');
    } catch (...) {
      // What is to be kept silent anyway.
    }
    return;
  }
  if (const QtMessageHandler before = process().before) before(type, context, text);
}

bool Silence::heard(const QString& words) const { return process().said.contains(words); }

}  // namespace kartix::adapters::qt
