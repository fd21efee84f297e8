#pragma once

#include <string_view>

namespace kartix {

/// True for a path in the notation of another system ("C:\kba\trace.txt", "\\server\kba", "kba\trace.txt"): here it
/// would be the odd name of a file in the current directory. An absolute path of this system never is one.
bool isForeignPath(std::string_view path);

}  // namespace kartix
