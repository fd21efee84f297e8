#pragma once

#include "scenarios/Play.h"

namespace kartix::test {

/// Compares what happened with what the scenario expects. Whatever it says, the script must fit, `init` succeeds
/// unless "init" is false, every reply is used up and no further request is made, and the clerk sees exactly the
/// "messages" (none when none are named).
void checkExpectations(const Installation& installation, const Outcome& outcome);

}  // namespace kartix::test
