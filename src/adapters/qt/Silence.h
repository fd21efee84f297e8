#pragma once

#include <QString>
#include <QtGlobal>
#include <mutex>

namespace kartix::adapters::qt {

/// As long as it lives, what Qt has to say about the work of this thread reaches neither standard error nor the
/// host's message handler, a fatal message excepted. Other threads are heard as before. One lives at a time in a
/// process: a thread that wants another waits, so what is done under it should be short.
class Silence {
 public:
  Silence();
  ~Silence();
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  struct Process;

  static Process& process();
  static void hear(QtMsgType type, const QMessageLogContext& context, const QString& text);

  std::unique_lock<std::mutex> only_;
};

}  // namespace kartix::adapters::qt
