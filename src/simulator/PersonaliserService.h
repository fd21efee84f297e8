#pragma once

#include "platform/Clock.h"
#include "simulator/Books.h"
#include "simulator/Element.h"

namespace kartix::simulator {

/// Answers `driverCard`. An order in which an element is missing or does not hold what it should, both images in
/// base64 among them, is refused with one error for each. An accepted one gets a card number, "DF" and 14
/// digits, and stands in the register with status 1 from then on. The same order twice is two orders.
Element answerOrder(Ledger& ledger, const Element& request, const platform::LocalTime& now);

/// Answers `orderCancellation`: an order that has status 1 gets status 101, anything else is refused.
Element answerCancellation(Ledger& ledger, const Element& request, const platform::LocalTime& now);

}  // namespace kartix::simulator
