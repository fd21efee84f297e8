#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// `platform::FileSystem::nativePath`.
std::string nativeName(std::string_view path);

/// The file that differs from `wanted` in the case of its extension only; nothing where the system finds that by the
/// name as it stands.
std::optional<std::string> findOtherCase(const std::filesystem::path& wanted);

}  // namespace kartix::adapters
