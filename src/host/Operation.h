#pragma once

#include <cstdint>
#include <string>

#include "component/Dispatch.h"

namespace kartix::host {

// The class `Kartix` as the command uses it: by the names of its members.

dispatch::Object makeKartix(Component& component);

bool callInit(dispatch::Object& kartix, const std::string& clerk, const std::string& person);

/// Calls the operation called `operation`; -1 for "none".
std::int32_t callOperation(dispatch::Object& kartix, const std::string& operation, const std::string& lfdnr);

}  // namespace kartix::host
