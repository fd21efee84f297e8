#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// `bytes` of the encoding called `name` as UTF-8, over the system's own converter. Nothing for a name that it does
/// not know, and for bytes that do not fit. Raises `std::bad_alloc`.
std::optional<std::string> converted(std::string_view bytes, const std::string& name);

}  // namespace kartix::adapters
