#pragma once

#include <windows.h>

namespace kartix::adapters::native {

/// The module that this code has been linked into, whatever program has loaded it.
HINSTANCE ownModule();

/// The present common controls, which the host's own manifest may not ask for. Where they cannot be had the old ones
/// are used. Lives as long as the windows that are made with it.
class CommonControls {
 public:
  CommonControls();
  ~CommonControls();
  CommonControls(const CommonControls&) = delete;
  CommonControls& operator=(const CommonControls&) = delete;

  /// Gives the rows of a list view a height in pixels.
  void setRowHeight(HWND list, int height) const;

  /// Windows that the thread makes as long as this lives get these controls.
  class InForce {
   public:
    explicit InForce(const CommonControls& controls);
    ~InForce();
    InForce(const InForce&) = delete;
    InForce& operator=(const InForce&) = delete;

   private:
    ULONG_PTR cookie_ = 0;
    bool active_ = false;
  };

 private:
  template <class Function>
  Function function(const char* name) const {
    return library_ ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library_, name))) : nullptr;
  }

  HANDLE context_ = INVALID_HANDLE_VALUE;
  HMODULE library_ = nullptr;
};

}  // namespace kartix::adapters::native
