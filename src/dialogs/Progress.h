#pragma once

#include <cstdint>
#include <string_view>

#include "platform/forms/Control.h"

namespace kartix {

class Runtime;

/// Where a window shows how far its work is.
struct ProgressControls {
  forms::ProgressBar& bar;
  forms::StatusBar& status;
};

/// Moves the bar to `percent` (0 to 100), one unit at a time when `animate`, with the window painted after each; a
/// text that is not empty becomes the status.
void showProgress(Runtime& runtime, const ProgressControls& controls, std::int16_t percent, std::string_view text,
                  bool animate);

}  // namespace kartix
