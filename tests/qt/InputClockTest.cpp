#include <gtest/gtest.h>

#include "adapters/frontend/InputClock.h"

namespace kartix::tests {
namespace {

using adapters::frontend::InputClock;
using std::chrono::milliseconds;

TEST(InputClock, KnowsHowLateAnEventIs) {
  struct Event {
    std::int64_t made;  ///< on our clock
    int late;
    int thought;  ///< how late it must be taken for
  };
  const std::vector<Event> events = {
      {1'000, 40, 0},     // nothing to compare with yet
      {1'100, 10, 0},     // the best until now
      {1'200, 900, 890},  // waited for a handler
      {1'400, 710, 700},  // with it
      {400'000, 0, 0},    // the clocks stand as before, or nearly so
      {461'000, 20, 20},  // late, or one of them has lost a little: the next minute tells
      {522'000, 20, 0},  {522'100, 2000, 1980},
  };
  // The display's clock begins anywhere, also shortly before it starts again from 0.
  for (const std::uint32_t begin : {500'000'000U, 0xFFFFFFFFU - 400'000U}) {
    InputClock clock;
    for (const Event& event : events) {
      const auto now = InputClock::Time(milliseconds(event.made + event.late));
      const auto stamp = static_cast<std::uint32_t>(begin + static_cast<std::uint32_t>(event.made));
      EXPECT_EQ(now - clock.made(stamp, now), milliseconds(event.thought)) << event.made;
    }
  }
  InputClock same;
  const InputClock::Time now(milliseconds(50'000));
  EXPECT_EQ(now - same.made(49'300, now), milliseconds(700)) << "the display is on this machine";
  EXPECT_EQ(same.made(0, now), now);
}

}  // namespace
}  // namespace kartix::tests
