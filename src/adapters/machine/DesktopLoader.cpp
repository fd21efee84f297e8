#include "adapters/machine/DesktopLoader.h"

#include <dlfcn.h>

#include <array>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace kartix::adapters::machine {
namespace {

namespace fs = std::filesystem;

constexpr const char* moduleFile = "libkartix-desktop.so";

#define KARTIX_TEXT_OF(name) #name
#define KARTIX_TEXT(name) KARTIX_TEXT_OF(name)
constexpr const char* entryName = KARTIX_TEXT(KARTIX_DESKTOP_ENTRY);

/// The folder of the library or program that this code is part of, as the system has it, wherever the process works
/// by now. Empty when it cannot be found out.
fs::path ownFolder() {
  const auto self = reinterpret_cast<std::uintptr_t>(&moduleFile);
  std::ifstream mapped("/proc/self/maps");
  for (std::string line; std::getline(mapped, line);) {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
    int path = 0;
    if (std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR " %*s %*s %*s %*s %n", &begin, &end, &path) != 2) continue;
    if (self >= begin && self < end) return fs::path(line.substr(static_cast<std::size_t>(path))).parent_path();
  }
  return {};
}

/// Where the module is looked for: in the folder `kartix` beside the library, or beside that of the command.
std::array<fs::path, 2> places() {
  const fs::path folder = ownFolder();
  return {folder / "kartix" / moduleFile, folder / KARTIX_LIBRARY_FROM_COMMAND / "kartix" / moduleFile};
}

const DesktopParts* load() {
  std::string reason = std::string(moduleFile) + " fehlt";
  for (const fs::path& file : places()) {
    std::error_code unreadable;
    if (!fs::exists(file, unreadable)) continue;
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (void* const entry = module ? dlsym(module, entryName) : nullptr) {
      return reinterpret_cast<const DesktopParts* (*)()>(entry)();
    }
    const char* const words = dlerror();
    reason = words ? words : file.string();
  }
  throw NotLoaded(reason);
}

}  // namespace

const DesktopParts& desktopParts() {
  static const DesktopParts& parts = *load();
  return parts;
}

}  // namespace kartix::adapters::machine
