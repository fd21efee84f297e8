#pragma once

#include <windows.h>

namespace kartix::automation {

/// For whom the server is registered.
enum class Scope { machine, user };

/// Enters the four classes, their names and the type library. Either all of it is there afterwards or nothing.
HRESULT registerServer(Scope scope) noexcept;
/// Takes out everything that `registerServer` enters; what is not there is no failure.
HRESULT unregisterServer(Scope scope) noexcept;

}  // namespace kartix::automation
