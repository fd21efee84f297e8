#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/Clock.h"
#include "platform/ObjectClasses.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"

namespace kartix::adapters {

/// Stands in front of windows, sounds, objects and clock of the machine, so that a host's test can let a script play
/// the clerk for as long as it likes. Between plays it hands on every call.
class TestClerk final : public platform::UserInterface,
                        public platform::SoundPlayer,
                        public platform::ObjectClasses,
                        public platform::Clock {
 public:
  /// What it stands in front of; outlives it.
  struct Machine {
    platform::UserInterface& windows;
    platform::SoundPlayer& sounds;
    platform::ObjectClasses& objects;
    platform::Clock& clock;
    std::function<std::unique_ptr<platform::Clock>(const platform::LocalTime&)> clockFrom;
  };

  /// What is left empty stays as it is: the windows, no transcript, the machine's time.
  struct Play {
    std::filesystem::path script;
    std::filesystem::path transcript;
    std::string now;  ///< "YYYY-MM-DDTHH:MM:SS"
  };

  explicit TestClerk(Machine machine);
  ~TestClerk() override;

  /// Ends the play that is on and begins another; one with nothing in it goes back to the machine. False when
  /// something of it cannot be used, which `mismatch` then tells: every window is closed through its close box until
  /// the next play, so that no test waits for a person. False too while a window is open; nothing changes then.
  bool begin(const Play& play);

  /// No operation comes any more: tells of steps that are left over, once.
  void end() noexcept;

  /// What did not fit so far, steps that are left over included; empty when nothing did.
  std::string mismatch() const;

  ShowResult showModal(forms::Form& form) override;
  void repaint() override;
  void setHourglass(bool on) override;
  void centerForm(forms::Form& form) override;
  void progressReported(const forms::Form& form, int value, std::string_view status) override;
  void playSound(std::string_view alias) override;
  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override;
  platform::LocalTime now() override;

 private:
  class Performance;

  Machine machine_;
  std::unique_ptr<Performance> performance_;
  int open_ = 0;  ///< windows
};

}  // namespace kartix::adapters
