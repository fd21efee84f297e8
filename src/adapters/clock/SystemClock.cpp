#include "adapters/clock/SystemClock.h"

#include <chrono>

#include "adapters/clock/LocalTime.h"

namespace kartix::adapters {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

class MachineClock final : public platform::Clock {
 public:
  platform::LocalTime now() override { return localTime(); }
};

/// Counts on from its start without summer time: an hour after 01:30 it is 02:30 on every day.
class StartedClock final : public platform::Clock {
 public:
  explicit StartedClock(const platform::LocalTime& start) {
    using std::chrono::days;
    using std::chrono::sys_days;
    // A day beyond the end of its month is one of the next.
    const sys_days month = std::chrono::year{start.year} / std::chrono::month{static_cast<unsigned>(start.month)} / 1;
    start_ = month + days{start.day - 1} + std::chrono::hours{start.hour} + std::chrono::minutes{start.minute} +
             seconds{start.second};
  }

  platform::LocalTime now() override {
    const auto time = start_ + std::chrono::duration_cast<seconds>(steady_clock::now() - begun_);
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    return {static_cast<int>(date.year()),
            static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count())};
  }

 private:
  std::chrono::sys_seconds start_;
  steady_clock::time_point begun_ = steady_clock::now();
};

}  // namespace

std::unique_ptr<platform::Clock> makeSystemClock(const std::optional<platform::LocalTime>& start) {
  if (start) return std::make_unique<StartedClock>(*start);
  return std::make_unique<MachineClock>();
}

}  // namespace kartix::adapters
