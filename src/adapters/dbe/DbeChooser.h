#pragma once

#include <memory>

#include "platform/DbeLibrary.h"

namespace kartix::adapters {

/// The embedded engine for a connection without a server address, the server's engine for any other. Both must write
/// rows in the same form, as the ones of this program do.
std::unique_ptr<platform::DbeLibrary> makeDbeChooser(std::unique_ptr<platform::DbeLibrary> embedded,
                                                     std::unique_ptr<platform::DbeLibrary> server);

}  // namespace kartix::adapters
