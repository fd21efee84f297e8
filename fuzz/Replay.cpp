#include <cstdio>
#include <filesystem>

#include "Target.h"
#include "support/Files.h"

/// Runs each target over the files of its folder below the one that is given.
int main(int, char** arguments) {
  for (const auto& file : std::filesystem::recursive_directory_iterator(arguments[1])) {
    if (!file.is_regular_file()) continue;
    std::fprintf(stderr, "%s\n", file.path().c_str());
    kartix::fuzz::run(file.path().parent_path().filename().string(), kartix::test::readBytes(file.path()));
  }
  return 0;
}
