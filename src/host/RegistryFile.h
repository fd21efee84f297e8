#pragma once

#include <filesystem>
#include <string>

namespace CLI {
class App;
}

namespace kartix::host {

/// Path of the settings store: `option` when it is not empty, else `$KARTIX_REGISTRY`, else `kartix/registry.reg` in
/// the user's configuration directory.
std::filesystem::path registryFile(const std::string& option);
/// What messages call the settings store in `file`, which is empty where it is in none.
std::string storeName(const std::filesystem::path& file);

/// Who reads the help of a command, which decides on its language.
enum class Reader { administrator, developer };

/// Adds the option `--registry`, whose value goes to `option`.
void addRegistryOption(CLI::App& command, std::string& option, Reader reader = Reader::administrator);

}  // namespace kartix::host
