#include <cstdlib>

#include "adapters/settings/UserFile.h"

namespace kartix::adapters {

std::filesystem::path userRegistryFile() {
  const wchar_t* const file = _wgetenv(L"KARTIX_REGISTRY");
  return file ? file : L"";
}

}  // namespace kartix::adapters
