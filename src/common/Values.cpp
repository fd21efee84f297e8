#include "common/Values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "common/Numbers.h"

namespace kartix {
namespace {

std::string numberText(double number) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), result.ptr};
}

struct Text {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool value) const { return value ? "True" : "False"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return numberText(value); }
  std::string operator()(const std::string& value) const { return value; }
};

struct Number {
  double operator()(std::monostate) const { return 0; }
  double operator()(bool value) const { return value ? -1 : 0; }
  double operator()(std::int64_t value) const { return static_cast<double>(value); }
  double operator()(double value) const { return value; }
  double operator()(const std::string& value) const { return leadingNumber(value); }
};

}  // namespace

std::string toText(const platform::Value& value) { return std::visit(Text(), value); }

std::int32_t toNumber(const platform::Value& value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double number = std::trunc(std::visit(Number(), value));
  if (std::isnan(number)) return 0;
  return static_cast<std::int32_t>(
      std::clamp(number, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

}  // namespace kartix
