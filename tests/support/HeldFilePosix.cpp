#include "support/HeldFile.h"

namespace kartix::test {

// Rights would not keep root from anything: what stands where the new content is prepared does.
std::shared_ptr<void> hold(const std::filesystem::path& file) {
  std::filesystem::create_directories(file.parent_path() / ("." + file.filename().string() + ".new"));
  return nullptr;
}

}  // namespace kartix::test
