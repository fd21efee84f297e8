#pragma once

#include <cstdint>
#include <string>

namespace kartix {
class Kartix;
}

namespace kartix::host {

/// Calls the operation called `operation`; -1 for any other name.
std::int32_t callOperation(Kartix& kartix, const std::string& operation, const std::string& lfdnr);

}  // namespace kartix::host
