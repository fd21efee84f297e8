#include "common/Numbers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace kartix {
namespace {

template <class Integer>
Integer saturated(double number) {
  using Limits = std::numeric_limits<Integer>;
  const double whole = std::trunc(number);
  return static_cast<Integer>(
      std::clamp(whole, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

}  // namespace

double leadingNumber(std::string_view text) {
  const auto start = text.find_first_not_of(" \t\r\n");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  bool negative = false;
  if (text.front() == '+' || text.front() == '-') {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  // from_chars would also take "inf" and "nan".
  if (text.empty() || (text.front() != '.' && std::isdigit(static_cast<unsigned char>(text.front())) == 0)) return 0;
  double number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view taken(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
    const std::size_t exponent = taken.find_first_of("eE");
    const bool tiny = exponent == std::string_view::npos
                          ? taken.substr(0, taken.find('.')).find_first_not_of('0') == std::string_view::npos
                          : taken[exponent + 1] == '-';
    number = tiny ? 0 : std::numeric_limits<double>::max();
  }
  return negative ? -number : number;
}

std::int16_t leadingInt16(std::string_view text) { return saturated<std::int16_t>(leadingNumber(text)); }
std::int32_t leadingInt32(std::string_view text) { return saturated<std::int32_t>(leadingNumber(text)); }

}  // namespace kartix
