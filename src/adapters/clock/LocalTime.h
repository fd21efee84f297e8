#pragma once

#include "platform/Clock.h"

namespace kartix::adapters {

/// The machine's local time.
platform::LocalTime localTime();

}  // namespace kartix::adapters
