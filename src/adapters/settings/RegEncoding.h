#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// The encodings of a registry file.
enum class RegEncoding {
  utf16,     ///< little-endian with mark: what the registry editor writes today
  utf8Mark,  ///< UTF-8 with mark
  utf8,
  ansi,  ///< single byte, begins with "REGEDIT4"
};

/// UTF-8 to UTF-16, little-endian, without mark, and back. Nothing for an odd number of bytes or half a character.
std::string toUtf16(std::string_view utf8);
std::optional<std::string> fromUtf16(std::string_view bytes);

/// Tells the encoding of a file and gives its text without mark as UTF-8. Nothing when the bytes do not fit the
/// encoding.
std::optional<std::string> decodeRegFile(std::string_view bytes, RegEncoding& encoding);
std::string encodeRegFile(std::string_view text, RegEncoding encoding);

}  // namespace kartix::adapters
