#pragma once

#include <windows.h>

namespace kartix::adapters::native {

/// Who hears the messages of a window.
class Listener {
 public:
  /// Answers a message. False when it is left to the system.
  virtual bool hear(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) noexcept = 0;
  /// The window has been destroyed, by whoever did it.
  virtual void gone() noexcept = 0;

 protected:
  ~Listener() = default;
};

/// A top-level window of our own, hidden at first. It is destroyed with this, or earlier by the system or its owner.
class WindowHandle {
 public:
  WindowHandle(Listener& listener, DWORD style, DWORD extendedStyle, HWND owner);
  ~WindowHandle();
  WindowHandle(const WindowHandle&) = delete;
  WindowHandle& operator=(const WindowHandle&) = delete;

  /// From now on the listener hears what happens: it must be able to.
  void listen() { listening_ = true; }

  /// Null where none could be made, and once it is destroyed.
  HWND get() const { return handle_; }

 private:
  static LRESULT CALLBACK procedure(HWND handle, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  static const wchar_t* className();

  Listener& listener_;
  HWND handle_ = nullptr;
  bool listening_ = false;
};

/// True when windows of this process can be seen by somebody; a service has a desktop that nobody sees.
bool desktopIsVisible();

}  // namespace kartix::adapters::native
