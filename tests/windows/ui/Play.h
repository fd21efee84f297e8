#pragma once

namespace kartix::tests {

/// Shows windows that tell on standard output what a clerk does in them, until both are closed.
void play();

}  // namespace kartix::tests
