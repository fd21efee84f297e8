#pragma once

#include <memory>

#include "platform/DbeLibrary.h"

namespace kartix::adapters {

/// The embedded engine for a connection without a server address, the server's engine for any other. A row is read by
/// the engine of the connection that was used last: who works with both at once reads each row before the next query,
/// or has engines that write rows in the same form.
std::unique_ptr<platform::DbeLibrary> makeDbeChooser(std::unique_ptr<platform::DbeLibrary> embedded,
                                                     std::unique_ptr<platform::DbeLibrary> server);

}  // namespace kartix::adapters
