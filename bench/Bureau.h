#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "adapters/script/Scripted.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "scenarios/Play.h"
#include "support/TestMachine.h"

namespace kartix::bench {

/// Seconds that the processor has spent on this thread.
double threadSeconds();

/// Those that `work` takes; a negative number when it gives False.
template <class Work>
double secondsOf(Work work) {
  const double start = threadSeconds();
  return work() ? threadSeconds() - start : -1;
}

/// An installation with a gateway that gives one answer again and again, and a scripted clerk.
class Bureau {
 public:
  /// `headers` of the answer are whole lines.
  Bureau(const test::Json& scenario, const std::string& answer, const std::string& headers = "");
  ~Bureau();
  Bureau(const Bureau&) = delete;
  Bureau& operator=(const Bureau&) = delete;

  /// Called when a window has been shown, and before it is.
  std::function<void(const forms::Form& form, bool before)> watch;

  /// Begins a session and carries the scenario's operation out, in the component of before or in a fresh one, which
  /// `front` shows, or else the scripted clerk plays. False when it did not succeed.
  bool operate(bool fresh = true, platform::UserInterface* front = nullptr);

  /// Begins a session in the component of before.
  bool begin();

  const test::Installation& installation() const { return installation_; }
  /// Body of the last request.
  const std::string& sent() const { return sent_; }
  int connections() const { return connections_; }
  std::string address(const std::string& path, bool tls = false) const;

 private:
  class Clerk;

  std::string sent_;
  int connections_ = 0;
  test::Installation installation_;
  std::unique_ptr<Clerk> clerk_;
  test::IdleParts silence_;
  std::unique_ptr<Component> component_;
  std::optional<dispatch::Object> kartix_;
};

}  // namespace kartix::bench
