#include <malloc.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>

#include "bench/Bureau.h"
#include "bench/Orders.h"
#include "bench/Targets.h"
#include "platform/forms/Form.h"
#include "support/Files.h"

extern char** environ;

namespace kartix::bench {
namespace {

/// A figure of /proc/self/status, in bytes.
double status(const std::string& name) {
  std::ifstream file("/proc/self/status");
  for (std::string word; file >> word;) {
    double kilobytes = 0;
    if (word == name + ":" && file >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

/// A gateway in a process of its own, so that what it keeps of a request does not count.
class Elsewhere {
 public:
  explicit Elsewhere(const std::string& answer) {
    std::array<int, 2> port{};
    std::array<int, 2> end{};
    if (pipe(port.data()) != 0 || pipe(end.data()) != 0) return;
    child_ = fork();
    if (child_ == 0) {
      close(end[1]);
      const test::LoopbackServer server({test::Reply{test::answer(answer)}});
      const std::string number = server.port();
      bool good = write(port[1], number.data(), number.size()) > 0;
      close(port[1]);
      char byte = 0;
      good = good && read(end[0], &byte, 1) == 0;
      _exit(good ? 0 : 1);
    }
    close(port[1]);
    close(end[0]);
    std::array<char, 16> number{};
    const ssize_t size = read(port[0], number.data(), number.size());
    port_.assign(number.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    close(port[0]);
    end_ = end[1];
  }
  ~Elsewhere() {
    close(end_);
    waitpid(child_, nullptr, 0);
  }
  Elsewhere(const Elsewhere&) = delete;
  Elsewhere& operator=(const Elsewhere&) = delete;

  const std::string& port() const { return port_; }

 private:
  pid_t child_ = -1;
  int end_ = -1;
  std::string port_;
};

/// Memory of the second order, from the question to the outcome, in sizes of what is sent: both pictures, their
/// text, and the body.
double copies(const std::string& port) {
  Json scenario = Orders::scenario();
  scenario["settings"]["ZEVIS.ZEVISPort"] = port;
  Bureau bureau(scenario, "");
  Orders::makePictures(bureau.installation());
  if (!bureau.operate()) return -1;
  double idle = 0;
  double peak = 0;
  bureau.watch = [&](const forms::Form& form, bool before) {
    if (form.name() != "MessageBox") return;
    if (!before && idle == 0) {
      malloc_trim(0);
      std::ofstream("/proc/self/clear_refs") << 5;
      idle = status("VmRSS");
    } else if (before && idle > 0) {
      peak = status("VmHWM");
    }
  };
  if (!bureau.operate(false) || peak <= idle) return -1;
  double sent = 0;
  for (const char* const picture : {"JP2", "JP3"}) {
    const auto size =
        static_cast<double>(std::filesystem::file_size(Orders::picture(bureau.installation(), picture)));
    sent += size + 2 * (size * 4 / 3);
  }
  return (peak - idle) / sent;
}

Target memoryTarget() {
  const auto gateway = std::make_shared<Elsewhere>(test::readBytes(test::scenarioFile("replies", "accepted.xml")));
  return {.what = "memory of an order, in sizes of what is sent", .most = 3, .figure = [gateway] {
            return medianOfSeven([&] { return copies(gateway->port()); });
          }};
}

/// Time of the processor that a host takes which links the library and does nothing, in milliseconds.
double startTime() {
  pid_t child = 0;
  const std::array<char*, 2> arguments = {const_cast<char*>(KARTIX_IDLE_HOST), nullptr};
  if (posix_spawn(&child, KARTIX_IDLE_HOST, nullptr, nullptr, arguments.data(), environ) != 0) return -1;
  int end = 0;
  rusage used{};
  if (wait4(child, &end, 0, &used) != child || end != 0) return -1;
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(used.ru_utime) + milliseconds(used.ru_stime);
}

}  // namespace

std::vector<Target> processTargets() {
  return {{.what = "start of a host that links the library",
           .most = 10,
           .unit = "ms",
           .figure = [] { return medianOfSeven([] { return medianOfSeven(startTime); }); }},
          memoryTarget()};
}

}  // namespace kartix::bench
