#include <ctime>

#include "adapters/clock/LocalTime.h"

namespace kartix::adapters {

platform::LocalTime localTime() {
  constexpr int firstYear = 1900;
  const std::time_t seconds = std::time(nullptr);
  std::tm t{};
  localtime_r(&seconds, &t);
  return {t.tm_year + firstYear, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}

}  // namespace kartix::adapters
