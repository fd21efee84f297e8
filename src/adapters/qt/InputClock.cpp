#include "adapters/qt/InputClock.h"

namespace kartix::adapters::qt {
namespace {

using std::chrono::milliseconds;

constexpr std::chrono::minutes period{1};
/// More than that is no delay: the event has its time from another clock.
constexpr milliseconds longestDelay = std::chrono::hours{1};
/// A display on the same machine has the same clock, and even its first event may be late.
constexpr milliseconds firstDelay = std::chrono::seconds{10};

/// Differences of clocks that start again every 49 days.
qint32 less(quint32 a, quint32 b) { return static_cast<qint32>(a - b); }
qint32 less(qint32 a, qint32 b) { return less(static_cast<quint32>(a), static_cast<quint32>(b)); }

}  // namespace

InputClock::Time InputClock::made(quint64 stamp, Time now) {
  if (stamp == 0) return now;
  const auto ours = std::chrono::duration_cast<milliseconds>(now.time_since_epoch()).count();
  const qint32 apart = less(static_cast<quint32>(ours), static_cast<quint32>(stamp));
  learn(apart, now);
  return now - milliseconds(less(apart, least()));
}

qint32 InputClock::least() const { return less(past_, *present_) < 0 ? past_ : *present_; }

void InputClock::learn(qint32 apart, Time now) {
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

}  // namespace kartix::adapters::qt
