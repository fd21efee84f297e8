#pragma once

#include <string>
#include <vector>

namespace kartix::host {

/// What a check of the installation has found.
struct Finding {
  enum class Level { good, note, fault };

  Level level = Level::good;
  std::string area;  ///< "settings", "database", ...
  std::string text;
  std::string mend;  ///< what to do about it; empty when nothing is wrong
};

using Findings = std::vector<Finding>;

}  // namespace kartix::host
