#pragma once

#include <windows.h>

namespace kartix::automation {

/// Objects and locks that keep the library in the process.
class ServerUse {
 public:
  ServerUse() { begin(); }
  ~ServerUse() { end(); }
  ServerUse(const ServerUse&) = delete;
  ServerUse& operator=(const ServerUse&) = delete;

  static void begin();
  static void end();
  /// Tells that the component which a process shares is there. It stays, and with it whatever its libraries have
  /// running.
  static void componentMade();
  /// True when nothing needs the library: nothing is held, and no component was ever made.
  static bool none();
};

/// The library itself, as the system has loaded it.
HMODULE thisModule();

}  // namespace kartix::automation
