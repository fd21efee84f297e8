#pragma once

#include <filesystem>

namespace kartix::adapters {

/// Makes an empty embedded host database, readable for its owner only. The file appears complete or not at all.
/// Throws `std::runtime_error` with a text for the administrator when it exists already or cannot be made.
void createHostDatabase(const std::filesystem::path& path);

}  // namespace kartix::adapters
