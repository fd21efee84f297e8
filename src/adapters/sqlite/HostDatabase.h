#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kartix::adapters {

/// The statements that make the host's tables with their column order, in words that every engine understands. Person
/// numbers are numbers, everything else is text; a column whose name the component does not use is called `spalteNNN`
/// after its position.
std::vector<std::string> hostTableStatements();

/// Makes an empty embedded host database, readable for its owner only. The file appears complete or not at all.
/// Throws `std::runtime_error` with a text for the administrator when it exists already or cannot be made.
void createHostDatabase(const std::filesystem::path& path);

}  // namespace kartix::adapters
