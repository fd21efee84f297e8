#pragma once

#include <cstdint>

namespace kartix {

struct Workplace;

/// Each runs one operation in a window of its own, shown modally, with the session's person and running number.
/// Returns the window's `result`: 1 when the operation was carried out; the outcome then stands in the session's
/// `ResultCard`. Everything else has been told to the clerk.

/// Order of a driver card: also 0, when the clerk went away without ordering. The settings' `ImageDir` must be set.
std::int16_t runOrder(Workplace& workplace);
/// Report of a change of a card's status.
std::int16_t runNotification(Workplace& workplace);
/// Cancellation of an order.
std::int16_t runCancellation(Workplace& workplace);

}  // namespace kartix
