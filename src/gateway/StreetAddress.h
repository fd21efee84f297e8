#pragma once

#include <string>
#include <string_view>

namespace kartix {

/// Parts of a street line.
struct StreetAddress {
  std::string street;
  std::string number;  ///< house number, digits only
  std::string addOn;   ///< what follows it: "a", "-14"
};

/// Splits a street line at the house number that its last digit belongs to. A line without one, or with nothing but
/// one character before it, is all street.
StreetAddress SplitStreet(std::string_view address);

}  // namespace kartix
