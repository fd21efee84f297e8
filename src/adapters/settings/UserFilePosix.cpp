#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "adapters/settings/UserFile.h"

namespace kartix::adapters {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::filesystem::path homeDirectory() {
  if (std::string home = environment("HOME"); !home.empty()) return home;
  const passwd* const user = getpwuid(getuid());
  return user && user->pw_dir ? user->pw_dir : "/";
}

}  // namespace

std::filesystem::path userRegistryFile() {
  if (std::string file = environment("KARTIX_REGISTRY"); !file.empty()) return file;
  // A relative XDG_CONFIG_HOME is invalid and counts as unset.
  std::filesystem::path config = environment("XDG_CONFIG_HOME");
  if (!config.is_absolute()) config = homeDirectory() / ".config";
  return config / "kartix" / "registry.reg";
}

}  // namespace kartix::adapters
