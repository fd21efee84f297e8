#include "common/Dates.h"

#include <array>
#include <cstdio>

#include "common/Text.h"

namespace kartix {

std::string displayToDatabase(std::string_view display) {
  if (text::length(display) != 10 || text::mid(display, 2, 1) != "." || text::mid(display, 5, 1) != ".") {
    return std::string(noDate);
  }
  return text::mid(display, 6, 4) + text::mid(display, 3, 2) + text::mid(display, 0, 2);
}

std::string checkedDatabaseDate(std::string_view date) {
  if (text::length(date) != 8 || date > "99999999" || date < noDate) return std::string(noDate);
  return std::string(date);
}

namespace moment {
namespace {

std::string digits(int value, int width) {
  std::array<char, 16> buffer{};
  const int length = std::snprintf(buffer.data(), buffer.size(), "%0*d", width, value);
  return {buffer.data(), static_cast<std::size_t>(length)};
}

}  // namespace

std::string yyyymmdd(const platform::LocalTime& t) {
  return digits(t.year, 4) + digits(t.month, 2) + digits(t.day, 2);
}

std::string hhnnss(const platform::LocalTime& t) {
  return digits(t.hour, 2) + ":" + digits(t.minute, 2) + ":" + digits(t.second, 2);
}

std::string stamp(const platform::LocalTime& t) {
  return yyyymmdd(t) + digits(t.hour, 2) + digits(t.minute, 2) + digits(t.second, 2) + "000";
}

}  // namespace moment
}  // namespace kartix
