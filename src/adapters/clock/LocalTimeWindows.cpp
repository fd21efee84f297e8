#include <windows.h>

#include "adapters/clock/LocalTime.h"

namespace kartix::adapters {

platform::LocalTime localTime() {
  SYSTEMTIME t{};
  GetLocalTime(&t);
  return {t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond};
}

}  // namespace kartix::adapters
