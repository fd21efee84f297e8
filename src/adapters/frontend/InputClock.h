#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace kartix::adapters::frontend {

/// Tells when input was made, however late a busy machine delivers it. Input events carry a time of the display's
/// clock, whose beginning is not known; the events that came with the least delay tell how it stands to ours.
class InputClock {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// When the input of an event that is delivered at `now` was made: `now` at the latest. `stamp` is the event's time
  /// in milliseconds, of which 32 bits are used; 0 when it has none.
  Time made(std::uint64_t stamp, Time now = std::chrono::steady_clock::now());

 private:
  std::int32_t least() const;
  void learn(std::int32_t apart, Time now);

  /// Our clock less the display's, at the event that was delivered with the least delay: of the running period, and
  /// of the one before. Clocks drift, so older ones are forgotten.
  std::optional<std::int32_t> present_;
  std::int32_t past_ = 0;
  Time since_;
};

}  // namespace kartix::adapters::frontend
