#pragma once

#include <stdexcept>

namespace kartix::simulator {

/// The simulator cannot be started; the text says why.
class StartFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A file named for it cannot be used; the text says which and why.
class BadFile : public StartFailure {
 public:
  using StartFailure::StartFailure;
};

}  // namespace kartix::simulator
