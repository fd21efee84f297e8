#pragma once

#include <filesystem>
#include <memory>

namespace kartix::test {

/// Keeps everybody from writing the file or putting another in its place, for as long as the result exists; it can
/// be read all the while.
std::shared_ptr<void> hold(const std::filesystem::path& file);

}  // namespace kartix::test
