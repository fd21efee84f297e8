#include "adapters/frontend/InputClock.h"

namespace kartix::adapters::frontend {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::minutes period{1};
/// More than that is no delay: the event has its time from another clock.
constexpr milliseconds longestDelay = std::chrono::hours{1};
/// A display on the same machine has the same clock, and even its first event may be late.
constexpr milliseconds firstDelay = std::chrono::seconds{10};

/// Differences of clocks that start again every 49 days.
std::int32_t less(std::uint32_t a, std::uint32_t b) { return static_cast<std::int32_t>(a - b); }
std::int32_t less(std::int32_t a, std::int32_t b) {
  return less(static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b));
}

}  // namespace

InputClock::Time InputClock::made(std::uint64_t stamp, Time now) {
  if (stamp == 0) return now;
  const auto ours = std::chrono::duration_cast<milliseconds>(now.time_since_epoch()).count();
  const std::int32_t apart = less(static_cast<std::uint32_t>(ours), static_cast<std::uint32_t>(stamp));
  learn(apart, now);
  return now - milliseconds(less(apart, least()));
}

std::int32_t InputClock::least() const { return less(past_, *present_) < 0 ? past_ : *present_; }

void InputClock::learn(std::int32_t apart, Time now) {
  if (!present_) {
    const bool sameClock = apart >= 0 && apart < firstDelay.count();
    present_ = past_ = sameClock ? 0 : apart;
    since_ = now;
  }
  if (less(apart, least()) > longestDelay.count()) present_ = past_ = apart;
  if (now - since_ >= period) {
    past_ = *present_;
    present_ = apart;
    since_ = now;
  }
  if (less(apart, *present_) < 0) present_ = apart;
}

}  // namespace kartix::adapters::frontend
