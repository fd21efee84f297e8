#pragma once

#include <cstdint>
#include <string_view>

namespace kartix {

/// The leading decimal number of `text` after blanks; 0 when there is none.
double leadingNumber(std::string_view text);

/// The same, cut to its whole part and saturating at the limits of the type.
std::int16_t leadingInt16(std::string_view text);
std::int32_t leadingInt32(std::string_view text);

}  // namespace kartix
