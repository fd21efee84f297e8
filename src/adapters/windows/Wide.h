#pragma once

#include <string>
#include <string_view>

namespace kartix::adapters::windows {

/// UTF-8 as the system takes it; an invalid byte becomes U+FFFD.
std::wstring wide(std::string_view utf8);

/// The system's text as UTF-8; half a character becomes U+FFFD.
std::string narrow(std::wstring_view text);

/// The system's own text for an error (`HRESULT`, or what `GetLastError` gives), in its language.
std::string systemText(unsigned long code);

}  // namespace kartix::adapters::windows
