#pragma once

#include <windows.h>

#include "adapters/frontend/InputClock.h"
#include "adapters/frontend/Keyboard.h"

namespace kartix::adapters::native {

class Window;

/// Looks at the thread's messages before they are dispatched, and says of which keys our windows must not hear
/// (`frontend::Keyboard`). When a key was pressed is the time of its message; whether the message calls itself a
/// repetition does not count, since remote desktops send what is held as presses of its own.
class KeyWatch {
 public:
  /// Takes note of a message. To be called once for each that is taken from the queue.
  void note(const MSG& message);

  /// True when the key that was noted last is none of the clerk's for what `window` shows.
  bool refuses(const MSG& message, const Window& window) const;

 private:
  frontend::InputClock clock_;
  frontend::Keyboard keyboard_;
};

}  // namespace kartix::adapters::native
