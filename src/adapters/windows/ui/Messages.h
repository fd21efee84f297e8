#pragma once

#include "adapters/windows/ui/KeyWatch.h"

namespace kartix::adapters::native {

/// Dispatches what the thread's queue holds. Keys and clicks are dropped: what a clerk does while the program is at
/// work neither runs anything now nor waits to be run later. The keys are noted by the watch, if there is one.
void dispatchWithoutInput(KeyWatch* keys = nullptr);

}  // namespace kartix::adapters::native
