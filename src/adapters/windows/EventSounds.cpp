#include "adapters/windows/System.h"

// After the system's own header.
#include <mmsystem.h>

#include "adapters/windows/Wide.h"
#include "adapters/windows/Windows.h"

namespace kartix::adapters {
namespace {

class EventSounds final : public platform::SoundPlayer {
 public:
  void playSound(std::string_view alias) override {
    // Whether anything is heard is the user's affair.
    static_cast<void>(
        PlaySoundW(windows::wide(alias).c_str(), nullptr, SND_ALIAS | SND_ASYNC | SND_NODEFAULT | SND_NOSTOP));
  }
};

}  // namespace

std::unique_ptr<platform::SoundPlayer> makeEventSounds() { return std::make_unique<EventSounds>(); }

}  // namespace kartix::adapters
