#include "host/RegistryFile.h"

#include <CLI/CLI.hpp>

#include "adapters/machine/Machine.h"

namespace kartix::host {

std::filesystem::path registryFile(const std::string& option) {
  if (!option.empty()) return option;
  return adapters::machine::userStore();
}

std::string storeName(const std::filesystem::path& file) {
  return file.empty() ? "the registry of the user" : file.string();
}

void addRegistryOption(CLI::App& command, std::string& option) {
  command
      .add_option("--registry", option,
                  "Settings store (default: $KARTIX_REGISTRY, else kartix/registry.reg in "
                  "the user's configuration directory)")
      ->type_name("FILE");
}

}  // namespace kartix::host
