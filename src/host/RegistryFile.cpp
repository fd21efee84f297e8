#include "host/RegistryFile.h"

#include <CLI/CLI.hpp>

#include "adapters/machine/Machine.h"
#include "common/Paths.h"

namespace kartix::host {

std::filesystem::path registryFile(const std::string& option) {
  if (!option.empty()) return pathOf(option);
  return adapters::machine::userStore();
}

std::string storeName(const std::filesystem::path& file) { return file.empty() ? "HKEY_CURRENT_USER" : utf8Of(file); }

void addRegistryOption(CLI::App& command, std::string& option, Reader reader) {
  constexpr const char* english =
      "Settings store (default: $KARTIX_REGISTRY, else kartix/registry.reg in the user's configuration directory)";
  constexpr const char* german =
      "Einstellungsspeicher (Vorgabe: $KARTIX_REGISTRY, sonst kartix/registry.reg im Konfigurationsverzeichnis des "
      "Benutzers)";
  command.add_option("--registry", option, reader == Reader::developer ? english : german)->type_name("FILE");
}

}  // namespace kartix::host
