#pragma once

#include <cstdint>
#include <string>

#include "platform/ObjectClasses.h"

namespace kartix {

/// The value written as text: empty, "True" / "False", a decimal number, or the text itself.
std::string toText(const platform::Value& value);

/// The value as a 32-bit number: the leading number of a text, saturating; -1 for True.
std::int32_t toNumber(const platform::Value& value);

}  // namespace kartix
