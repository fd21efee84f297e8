#pragma once

#include <memory>
#include <optional>

#include "platform/Clock.h"

namespace kartix::adapters {

/// The machine's local time; with `start` a clock that shows that local time now and runs on from there.
std::unique_ptr<platform::Clock> makeSystemClock(const std::optional<platform::LocalTime>& start = std::nullopt);

}  // namespace kartix::adapters
