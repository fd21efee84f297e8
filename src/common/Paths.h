#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kartix {

/// `utf8` as the standard library takes it. Its own way from narrow text to a path leads over the system's code page
/// where there is one.
std::filesystem::path pathOf(std::string_view utf8);

/// `path` in UTF-8, with the separators that it has.
std::string utf8Of(const std::filesystem::path& path);

/// True for a path in the notation of another system ("C:\kba\trace.txt", "\\server\kba", "kba\trace.txt"): here it
/// would be the odd name of a file in the current directory. An absolute path of this system never is one.
bool isForeignPath(std::string_view path);

}  // namespace kartix
