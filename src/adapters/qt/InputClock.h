#pragma once

#include <QtGlobal>
#include <chrono>
#include <optional>

namespace kartix::adapters::qt {

/// Tells when input was made, however late a busy machine delivers it. Input events carry a time of the display's
/// clock, whose beginning is not known; the events that came with the least delay tell how it stands to ours.
class InputClock {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// When the input of an event that is delivered at `now` was made: `now` at the latest. `stamp` is the event's time
  /// in milliseconds, of which 32 bits are used; 0 when it has none.
  Time made(quint64 stamp, Time now = std::chrono::steady_clock::now());

 private:
  qint32 least() const;
  void learn(qint32 apart, Time now);

  /// Our clock less the display's, at the event that was delivered with the least delay: of the running period, and
  /// of the one before. Clocks drift, so older ones are forgotten.
  std::optional<qint32> present_;
  qint32 past_ = 0;
  Time since_;
};

}  // namespace kartix::adapters::qt
