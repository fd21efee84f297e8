#include "host/RegistryFile.h"

#include <CLI/CLI.hpp>

#include "adapters/settings/UserFile.h"

namespace kartix::host {

std::filesystem::path registryFile(const std::string& option) {
  if (!option.empty()) return option;
  return adapters::userRegistryFile();
}

void addRegistryOption(CLI::App& command, std::string& option) {
  command
      .add_option("--registry", option,
                  "Settings store (default: $KARTIX_REGISTRY, else kartix/registry.reg in "
                  "the user's configuration directory)")
      ->type_name("FILE");
}

}  // namespace kartix::host
