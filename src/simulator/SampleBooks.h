#pragma once

#include "simulator/Books.h"

namespace kartix::simulator {

/// The books of a new gateway: the sample accounts, the cards of the sample persons, and 57 holders called Müller.
Books sampleBooks();

}  // namespace kartix::simulator
