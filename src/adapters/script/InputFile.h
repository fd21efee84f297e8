#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kartix::adapters {

using Json = nlohmann::ordered_json;

/// Content of `file`, at most 16 MiB. Raises `BadInput`.
std::string readInputFile(const std::filesystem::path& file);

/// `text` as JSON. Raises `BadInput` with the place of the fault.
Json parseJson(std::string_view text);

/// Lets go of what is in `value` without taking memory for that, as its own end would.
void dissolve(Json& value) noexcept;

/// JSON text on one line; bytes that are not UTF-8 are replaced.
std::string toLine(const Json& value);

}  // namespace kartix::adapters
