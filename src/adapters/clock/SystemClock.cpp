#include "adapters/clock/SystemClock.h"

#include <chrono>
#include <ctime>

namespace kartix::adapters {
namespace {

constexpr int firstYear = 1900;

platform::LocalTime fromCalendar(const std::tm& t) {
  return {t.tm_year + firstYear, t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec};
}

class MachineClock final : public platform::Clock {
 public:
  platform::LocalTime now() override {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return fromCalendar(local);
  }
};

/// Counts on from its start without summer time: an hour after 01:30 it is 02:30 on every day.
class StartedClock final : public platform::Clock {
 public:
  explicit StartedClock(const platform::LocalTime& start) {
    std::tm t{};
    t.tm_year = start.year - firstYear;
    t.tm_mon = start.month - 1;
    t.tm_mday = start.day;
    t.tm_hour = start.hour;
    t.tm_min = start.minute;
    t.tm_sec = start.second;
    start_ = timegm(&t);
  }

  platform::LocalTime now() override {
    using std::chrono::seconds;
    const auto passed = std::chrono::duration_cast<seconds>(std::chrono::steady_clock::now() - begun_).count();
    const std::time_t time = start_ + passed;
    std::tm t{};
    gmtime_r(&time, &t);
    return fromCalendar(t);
  }

 private:
  std::time_t start_ = 0;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
};

}  // namespace

std::unique_ptr<platform::Clock> makeSystemClock(const std::optional<platform::LocalTime>& start) {
  if (start) return std::make_unique<StartedClock>(*start);
  return std::make_unique<MachineClock>();
}

}  // namespace kartix::adapters
