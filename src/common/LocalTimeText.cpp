#include "common/LocalTimeText.h"

#include <chrono>
#include <string>

#include "common/Numbers.h"

namespace kartix {

std::optional<platform::LocalTime> parseLocalTime(std::string_view text) {
  constexpr std::string_view shape = "dddd-dd-ddTdd:dd:dd";
  if (text.size() != shape.size()) return std::nullopt;
  for (std::size_t i = 0; i < shape.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (shape[i] == 'd' ? !digit : text[i] != shape[i]) return std::nullopt;
  }
  const auto number = [&](std::size_t start, std::size_t size) -> int {
    return leadingInt32(text.substr(start, size));
  };
  const platform::LocalTime time{number(0, 4),  number(5, 2),  number(8, 2),
                                 number(11, 2), number(14, 2), number(17, 2)};
  const std::chrono::year_month_day day(std::chrono::year(time.year),
                                        std::chrono::month(static_cast<unsigned>(time.month)),
                                        std::chrono::day(static_cast<unsigned>(time.day)));
  if (!day.ok() || time.hour > 23 || time.minute > 59 || time.second > 59) return std::nullopt;
  return time;
}

}  // namespace kartix
