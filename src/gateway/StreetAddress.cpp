#include "gateway/StreetAddress.h"

#include <algorithm>

#include "common/Text.h"

namespace kartix {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view numberCharacters = "0123456789-";

}  // namespace

StreetAddress SplitStreet(std::string_view address) {
  StreetAddress parts;
  const auto lastDigit = address.find_last_of(digits);
  const auto before = lastDigit == std::string_view::npos ? std::string_view::npos
                                                          : address.find_last_not_of(numberCharacters, lastDigit);
  // The character in front of the number must not be the line's first one.
  if (before == std::string_view::npos || text::length(address.substr(0, before + 1)) == 1) {
    parts.street = text::trim(address);
    return parts;
  }
  const std::string_view number = address.substr(before + 1);
  const auto numberEnd = std::min(number.find_first_not_of(digits), number.size());
  parts.street = text::trim(address.substr(0, before + 1));
  parts.number = text::trim(number.substr(0, numberEnd));
  parts.addOn = text::trim(number.substr(numberEnd));
  return parts;
}

}  // namespace kartix
