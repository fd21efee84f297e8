#pragma once

#include <string>
#include <string_view>

namespace kartix::adapters::native {

/// Text for the system, and the way back. What is no valid text becomes U+FFFD.
std::wstring wide(std::string_view utf8);
std::string narrow(std::wstring_view text);

/// The same with "\r\n" for every line break, as fields of several lines want it.
std::wstring wideLines(std::string_view utf8);

}  // namespace kartix::adapters::native
