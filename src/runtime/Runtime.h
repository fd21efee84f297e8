#pragma once

#include <atomic>
#include <string>

#include "platform/Platform.h"
#include "platform/UserInterface.h"
#include "runtime/Calls.h"
#include "runtime/Global.h"
#include "runtime/Konfiguration.h"
#include "runtime/Reporting.h"
#include "runtime/Trace.h"

namespace kartix {

/// What every room of the component works with: the machine, the trace, the helpers, messages and settings.
class Runtime {
 public:
  explicit Runtime(const platform::Platform& parts);
  Runtime(const Runtime&) = delete;
  Runtime& operator=(const Runtime&) = delete;

  /// Opens the trace file when the settings ask for one, and tells the clerk. A failure is reported; the component
  /// then works without trace.
  void TraceOpen();
  /// Ends and closes the trace file when it is open, and tells the clerk.
  void TraceClose();

  /// Loads `form` and shows it modally until it is hidden. A failure of a handler or of the front end, or that it
  /// cannot be shown, is traced; the form then holds its failure value, unless it had been hidden before. That it
  /// cannot be shown is also told on standard error, once until `forgetDisplay`. At the end of the process no window
  /// opens any more, without a word.
  void showModal(forms::Form& form) noexcept;
  /// A new host object begins: a missing display is worth telling again.
  void forgetDisplay() { displayMissed_ = false; }

  /// Refuses the public call `call`, made on another thread than the component's own: traced, and told on standard
  /// error once.
  void refuseThread(std::string_view call) noexcept;

  platform::Platform machine;
  Calls calls;
  Trace trace;
  Global global;
  Reporting reporting;
  Konfiguration konfiguration;

  std::string ClerkName;  ///< the acting clerk, as named by the host

 private:
  void missDisplay(const forms::Form& form, platform::UserInterface::ShowResult why);

  bool displayMissed_ = false;
  std::atomic<bool> threadRefused_ = false;
};

}  // namespace kartix
