#pragma once

#include <string>
#include <string_view>

/// UTF-16, the text of settings files and of the Windows interfaces, in the order of this machine's bytes.
namespace kartix::utf16 {

/// An invalid byte of `utf8` becomes U+FFFD.
std::u16string encode(std::string_view utf8);

/// UTF-8; half a character becomes U+FFFD.
std::string decode(std::u16string_view text);

/// False for a text that holds half a character.
bool isValid(std::u16string_view text);

}  // namespace kartix::utf16
