#pragma once

#include <stdexcept>

#include "adapters/machine/DesktopParts.h"

namespace kartix::adapters::machine {

/// The module of windows and pictures cannot be loaded; the text says why.
class NotLoaded : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Loads the module when it is called first. It stays until the process ends. Throws `NotLoaded`, and tries again
/// with the next call.
const DesktopParts& desktopParts();

}  // namespace kartix::adapters::machine
