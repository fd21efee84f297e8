#pragma once

#include <oaidl.h>

#include <span>

namespace kartix::automation {

/// What the system knows a class by. None of it ever changes; docs/windows.md lists them.
struct Identity {
  const wchar_t* name;       ///< the name that hosts create it by, also that of the class in the table
  const wchar_t* versioned;  ///< the name with its version
  CLSID classId;
  IID interfaceId;  ///< of its dual interface
};

/// In the order of the table of classes.
std::span<const Identity> identities();

/// The type library, version 1.0.
extern const GUID libraryId;

}  // namespace kartix::automation
