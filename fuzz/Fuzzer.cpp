#include <cstdlib>

#include "Target.h"

/// KARTIX_FUZZ names the target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const char* const name = std::getenv("KARTIX_FUZZ");
  kartix::fuzz::run(name ? name : "", {reinterpret_cast<const char*>(bytes), size});
  return 0;
}
