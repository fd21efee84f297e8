#include <QApplication>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <sstream>

#include "adapters/clock/SystemClock.h"
#include "adapters/machine/Machine.h"
#include "bench/Bureau.h"
#include "bench/Targets.h"
#include "platform/Clock.h"
#include "platform/forms/Control.h"
#include "platform/forms/Form.h"
#include "runtime/Trace.h"
#include "support/Files.h"

namespace kartix::bench {
namespace {

using test::Json;

/// Settings in the store and in the ini file.
struct Settled {
  Settled() : bureau(scenario(), "") { bureau.operate(); }

  static Json scenario() {
    Json scenario = test::loadBase("found.json");
    scenario["operation"] = "none";
    scenario["script"] = Json::array();
    scenario["ini"] = {{"ZKR.KENZA", "15003"}, {"ZKR.BehoerdeVorderseite", "Stadt Köln"}};
    return scenario;
  }

  std::size_t read() const {
    std::size_t size = 0;
    for (const char* const file : {"registry.reg", "kartix.ini"}) {
      size += test::readBytes(bureau.installation().file(file)).size();
    }
    return size;
  }

  Bureau bureau;
};

Target initTarget() {
  const auto settled = later<Settled>();
  return compare(
      "init", [settled] { return settled().bureau.begin(); }, "reading of the same two files",
      [settled] { return settled().read() > 0; }, 2);
}

/// A trace of its own.
struct Traced {
  explicit Traced(int level) {
    if (level > 0) trace.open((directory / "own.txt").string(), static_cast<std::int16_t>(level));
    trace.start();
  }
  ~Traced() { std::fclose(plain); }
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;

  test::TempDir directory;
  std::unique_ptr<platform::Clock> clock = adapters::makeSystemClock({});
  Trace trace{*clock};
  std::FILE* plain = std::fopen((directory / "plain.txt").c_str(), "w");
};

constexpr const char* line = "Call: Function ZKRAnfrage";

Target traceTarget() {
  const auto traced = later<Traced>(trace_level::calls);
  return compare(
      "trace line",
      [traced] {
        traced().trace.TraceLine(line, trace_level::calls);
        return true;
      },
      "fprintf and fflush",
      [traced] {
        const std::time_t now = std::time(nullptr);
        std::tm local{};
        localtime_r(&now, &local);
        std::fprintf(traced().plain, "%02d.%02d.%04d %02d:%02d:%02d  %s\r\n", local.tm_mday, local.tm_mon + 1,
                     local.tm_year + 1900, local.tm_hour, local.tm_min, local.tm_sec, line);
        return std::fflush(traced().plain) == 0;
      },
      1.5);
}

[[gnu::noinline]] void nothing(Trace& trace) { asm volatile("" : : "r"(&trace) : "memory"); }
[[gnu::noinline]] void silent(Trace& trace) { trace.TraceLine(line, trace_level::calls); }

double nanoseconds(void (*call)(Trace&), Trace& trace) {
  constexpr int calls = 2'000'000;
  const double start = threadSeconds();
  for (int i = 0; i < calls; ++i) call(trace);
  return (threadSeconds() - start) / calls * 1e9;
}

Target silentTarget() {
  const auto measure = [] {
    Traced traced(0);
    return medianOfSeven(
        [&] { return std::max(0.0, nanoseconds(silent, traced.trace) - nanoseconds(nothing, traced.trace)); });
  };
  return {
      .what = "trace call with tracing off, beyond an empty function", .most = 2, .unit = "ns", .figure = measure};
}

/// Real windows, and a clerk who is faster than any person.
class QuickClerk final : public platform::UserInterface {
 public:
  ShowResult showModal(forms::Form& form) override {
    QTimer clerk;
    bool done = false;
    QObject::connect(&clerk, &QTimer::timeout, [&] {
      if (!done) done = act(form);
    });
    clerk.start(std::chrono::milliseconds(1));
    return windows_->showModal(form);
  }
  void repaint() override { windows_->repaint(); }
  void setHourglass(bool on) override { windows_->setHourglass(on); }
  void centerForm(forms::Form& form) override { windows_->centerForm(form); }
  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    windows_->progressReported(form, value, status);
  }

 private:
  static bool act(forms::Form& form) {
    const bool start = form.name() == "StartForm";
    if (start && form.find("Text[3]")->text().empty()) return false;  // the person is being loaded
    if (start) dynamic_cast<forms::TextField&>(*form.find("Text[4]")).userEdit("df000000000100");
    return form.find("Button[0]")->userClick();
  }

  std::unique_ptr<platform::UserInterface> windows_ = adapters::machine::makeUserInterface();
};

Target windowsTarget() {
  const auto measure = [] {
    Json scenario = test::loadBase("found.json");
    scenario["script"] = {"StartForm: type Text[4] df000000000100", "StartForm: click Button[0]",
                          "ZKR: click Button[0]"};
    Bureau bureau(scenario, test::readBytes(test::scenarioFile("replies", "auskunft.xml")));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 0;
    QApplication application(count, nullptr);
    QuickClerk clerk;
    const auto milliseconds = [&](platform::UserInterface* front) {
      const auto start = std::chrono::steady_clock::now();
      if (!bureau.operate(true, front)) return -1.0;
      return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    };
    if (milliseconds(&clerk) < 0) return -1.0;  // the first window loads fonts, and is not asked after
    return medianOfSeven([&] { return std::max(0.0, milliseconds(&clerk) - milliseconds(nullptr)); });
  };
  return {.what = "inquiry in real windows, beyond the scripted clerk", .most = 250, .unit = "ms", .figure = measure};
}

}  // namespace

std::vector<Target> surroundingTargets() { return {initTarget(), traceTarget(), silentTarget(), windowsTarget()}; }

}  // namespace kartix::bench
