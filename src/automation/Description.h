#pragma once

#include <cstdint>
#include <string_view>

#include "kartix/automation.h"

namespace kartix::automation {

/// The member in `slot` of a class, as C knows it. Raises `Failure` or `dispatch::Refusal`.
kartix_member describe(std::string_view className, std::int32_t slot);

/// The name of class number `index`. Raises `Failure`.
const char* className(std::int32_t index);

}  // namespace kartix::automation
