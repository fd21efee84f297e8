#pragma once

#include <filesystem>
#include <memory>

#include "simulator/StateStore.h"

namespace kartix::host {

/// The simulator's books in a file, at most 64 MiB. A new one is readable by its owner only; whoever reads it while
/// it is replaced finds the old or the new content.
std::unique_ptr<simulator::StateStore> makeStateFile(const std::filesystem::path& file);

}  // namespace kartix::host
