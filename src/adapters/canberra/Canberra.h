#pragma once

#include <memory>

#include "platform/SoundPlayer.h"

namespace kartix::adapters {

/// Plays event sounds through the desktop's sound theme. The library behind it is looked for at the first sound;
/// without it, or without a sound system, every sound is silence.
std::unique_ptr<platform::SoundPlayer> makeCanberraSounds();

}  // namespace kartix::adapters
