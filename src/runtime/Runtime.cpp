#include "runtime/Runtime.h"

#include <cstdio>

#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "platform/UserInterface.h"
#include "platform/forms/Form.h"

namespace kartix {
namespace {

const std::string traceKey = std::string(productKey) + "ZFER\\";

std::string_view reason(platform::UserInterface::ShowResult why) {
  using ShowResult = platform::UserInterface::ShowResult;
  if (why == ShowResult::noWidgets) return "das Anwendungsobjekt des Programms ist keine QApplication";
  if (why == ShowResult::otherThread) return "Qt läuft in einem anderen Thread als dieser Aufruf";
  if (why == ShowResult::notLoaded) return "die Bibliothek der Fenster ist nicht da";
  return "keine Anzeige vorhanden";
}

}  // namespace

Runtime::Runtime(const platform::Platform& parts)
    : machine(parts),
      trace(parts.clock),
      global(trace, parts.dbe, parts.userInterface, parts.clock),
      reporting(trace, global),
      konfiguration(parts.registry, parts.profileFiles, trace, global, reporting) {
  trace.onWriteFailure = [this] { reporting.ReportError(106); };
}

void Runtime::TraceOpen() {
  // The trace state belongs to all objects of the process: a new object begins a new file.
  trace.close();
  const std::int16_t level = leadingInt16(konfiguration.GetIni({}, traceKey, "DebugLevel"));
  if (level <= 0) return;
  const std::string file = text::trim(konfiguration.GetIni({}, traceKey, "DebugFile"));
  if (isForeignPath(file) || !trace.open(file, level)) {
    reporting.ReportError(105, file);
    return;
  }
  reporting.InfoMsg("Debuglevel: " + std::to_string(level) + "\r\nDatei: " + file, hintCaption);
  trace.start();
  trace.TraceLine("ARGO Kartix", trace_level::calls);
  trace.TraceSeparator();
  trace.TraceRegDump();
}

void Runtime::TraceClose() {
  if (!trace.TraceOn()) return;
  trace.TraceSeparator();
  trace.TraceLine("EOF", trace_level::calls);
  const std::string file = trace.DebugFile();
  trace.close();
  reporting.InfoMsg("Debug-Datei " + file + " geschlossen.", hintCaption);
}

void Runtime::missDisplay(const forms::Form& form, platform::UserInterface::ShowResult why) {
  const std::string line =
      std::string("Fenster ").append(form.name()).append(" kann nicht angezeigt werden: ").append(reason(why));
  trace.TraceLine(line, trace_level::calls);
  // Of a message that nobody could see, the message is what counts.
  if (reporting.lastMessage().text.empty()) reporting.note(0, line);
  // What the window's load handler switched on would stay on.
  machine.userInterface.setHourglass(false);
  if (displayMissed_) return;
  displayMissed_ = true;
  std::fprintf(stderr, "kartix: %s\n", line.c_str());
}

void Runtime::refuseThread(std::string_view call) noexcept {
  constexpr const char* why = "Aufruf aus einem anderen Thread als dem des ersten Aufrufs";
  trace.TraceRefusal(call, why);
  if (threadRefused_.exchange(true)) return;
  std::fprintf(stderr, "kartix: %.*s: abgewiesen, %s\n", static_cast<int>(call.size()), call.data(), why);
}

void Runtime::showModal(forms::Form& form) noexcept {
  if (Calls::threadEnds()) return;
  form.load();
  if (form.failure().empty()) {
    form.protect([&] {
      const auto result = machine.userInterface.showModal(form);
      if (result != platform::UserInterface::ShowResult::ended) missDisplay(form, result);
    });
  }
  if (!form.failure().empty()) {
    trace.TraceLine({"Fenster ", form.name(), " abgebrochen: ", form.failure()}, trace_level::calls);
  }
}

}  // namespace kartix
