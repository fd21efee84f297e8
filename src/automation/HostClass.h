#pragma once

#include <string_view>

#include "kartix/automation.h"

namespace kartix::automation {

/// Registers a class of the host's, or takes it away again with NULL.
void registerClass(std::string_view name, const kartix_host_class* hostClass);

}  // namespace kartix::automation
