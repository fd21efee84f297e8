#pragma once

#include <memory>

#include "platform/DbeLibrary.h"

namespace kartix::adapters {

/// The embedded host database: the name of a database is the path of its file, which must exist; server, users and
/// passwords mean nothing. A statement waits fifteen seconds for a file that another program writes to and ends after
/// a minute.
std::unique_ptr<platform::DbeLibrary> makeSqliteDbe();

}  // namespace kartix::adapters
