#pragma once

#include <string>
#include <utility>
#include <vector>

namespace kartix {

class Kartix;

/// The 29 result properties by their public names, in the order of their slots.
std::vector<std::pair<std::string, std::string>> resultProperties(const Kartix& kartix);

}  // namespace kartix
