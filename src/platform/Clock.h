#pragma once

namespace kartix::platform {

/// A moment of local time: full year, month 1 to 12, day 1 to 31, hour 0 to 23, minute and second 0 to 59.
struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime now() = 0;
};

}  // namespace kartix::platform
