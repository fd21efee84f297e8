#pragma once

#include <filesystem>

namespace kartix::adapters {

/// Path of the user's settings store: `$KARTIX_REGISTRY`, else `kartix/registry.reg` in the user's configuration
/// directory (`$XDG_CONFIG_HOME`, else `~/.config`). On Windows, where the registry is that store, only what
/// `KARTIX_REGISTRY` names, and otherwise nothing.
std::filesystem::path userRegistryFile();

}  // namespace kartix::adapters
