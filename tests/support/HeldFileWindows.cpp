#include <windows.h>

#include "support/HeldFile.h"

namespace kartix::test {

std::shared_ptr<void> hold(const std::filesystem::path& file) {
  return {CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr), CloseHandle};
}

}  // namespace kartix::test
