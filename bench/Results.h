#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kartix::bench {

/// What was measured of a target.
struct Result {
  std::string what;
  std::string unit;  ///< of a figure; "times" for a ratio
  double is = 0;     ///< negative when it was not measured
  double most = 0;

  bool reached() const { return is >= 0 && is <= most; }
};

/// Prints a line for each.
void print(const std::vector<Result>& results);

/// Writes `results.json` and the picture `results.svg` into `folder`.
void write(const std::vector<Result>& results, const std::filesystem::path& folder);

}  // namespace kartix::bench
