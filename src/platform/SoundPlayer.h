#pragma once

#include <string_view>

namespace kartix::platform {

/// Plays the system's event sounds. Never waits, never interrupts a sound, never fails.
class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;
  /// `alias` is "SystemQuestion", "SystemExclamation" or "SystemHand".
  virtual void playSound(std::string_view alias) = 0;
};

}  // namespace kartix::platform
