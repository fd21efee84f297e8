#pragma once

#include "adapters/windows/System.h"

// After the system's own header.
#include <combaseapi.h>

namespace kartix::adapters::windows {

/// The thread's apartment, kept for as long as somebody needs it: mostly the host's, else one of our own.
class Apartment {
 public:
  // A thread that the host has put into the apartment for many threads stays there, and can be worked with.
  Apartment() : own_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ~Apartment() {
    if (own_) CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  bool own_;
};

}  // namespace kartix::adapters::windows
