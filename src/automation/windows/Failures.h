#pragma once

#include <oaidl.h>

#include <string>

#include "automation/windows/Identifiers.h"
#include "automation/windows/Variants.h"

namespace kartix::automation {

/// Why a call failed, as the system tells it.
struct Failed {
  HRESULT code = E_FAIL;
  std::string text;  ///< for a person; may be empty
  UINT argument = CallFailure::noArgument;
};

/// The failure that is just being handled: to be called in a `catch`.
Failed currentFailure() noexcept;

/// Tells it to a caller by name.
HRESULT tell(const Failed& failed, const Identity& source, EXCEPINFO* failure) noexcept;
/// Tells it to a caller of the dual interface.
HRESULT tell(const Failed& failed, const Identity& source) noexcept;

}  // namespace kartix::automation
