#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace kartix::adapters {

/// `platform::FileSystem::appendLine`.
std::error_code appendDurably(const std::string& path, std::string_view line) noexcept;

/// `platform::FileSystem::readLines`, of lines of at most `longest` bytes.
std::error_code readWholeLines(const std::string& path, std::size_t longest,
                               const std::function<void(std::string_view)>& take);

}  // namespace kartix::adapters
