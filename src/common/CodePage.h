#pragma once

#include <string>
#include <string_view>

/// The single-byte code page of the installations (Windows-1252) and ISO-8859-1, in which messages travel.
namespace kartix::codepage {

/// UTF-8 to Windows-1252. What does not fit becomes "?"; the C1 controls U+0081, U+008D, U+008F, U+0090 and U+009D
/// map to the bytes that the code page leaves undefined, so that every byte survives a round trip.
std::string toAnsi(std::string_view utf8);

/// The same for one character.
char toAnsiByte(char32_t character) noexcept;

/// Windows-1252 to UTF-8.
std::string fromAnsi(std::string_view bytes);

/// ISO-8859-1 to UTF-8.
std::string fromIso(std::string_view bytes);

/// UTF-8 XML text to ISO-8859-1 bytes; a character outside it becomes a numeric character reference.
std::string toIsoXml(std::string utf8);

}  // namespace kartix::codepage
