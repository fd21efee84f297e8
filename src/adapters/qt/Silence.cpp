#include "adapters/qt/Silence.h"

#include <atomic>
#include <thread>

namespace kartix::adapters::qt {

/// Qt knows one message handler for the whole process.
struct Silence::Process {
  std::mutex only;
  std::atomic<QtMessageHandler> before = nullptr;
  std::atomic<std::thread::id> silent;
};

Silence::Process& Silence::process() {
  static Process process;
  return process;
}

Silence::Silence() : only_(process().only) {
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
  if (type != QtFatalMsg && process().silent.load() == std::this_thread::get_id()) return;
  if (const QtMessageHandler before = process().before) before(type, context, text);
}
}  // namespace kartix::adapters::qt
