#pragma once

#include "component/Dispatch.h"

namespace kartix::automation {

/// The functions of the dual interface of `type` in their order: those of `IUnknown` and `IDispatch`, then one for
/// each slot. Made once for each class.
const void* const* functionsOf(const dispatch::Class& type);

}  // namespace kartix::automation
