#include <windows.h>

#include <algorithm>
#include <array>
#include <limits>

#include "adapters/libxml2/Conversion.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "common/Utf16.h"

namespace kartix::adapters {
namespace {

/// A family of names that end in a number, and the system's number for its number 0.
struct Family {
  std::string_view prefix;
  int first;
};
constexpr std::array<Family, 5> families = {
    {{"ISO-8859-", 28590}, {"ISO_8859-", 28590}, {"WINDOWS-", 0}, {"CP", 0}, {"IBM", 0}}};

/// The system's number for the code page called `name`; 0 for one that is not known.
UINT codePageOf(const std::string& name) {
  constexpr std::size_t longest = 5;
  const std::string upper = text::upper(name);
  for (const auto& [prefix, first] : families) {
    if (!upper.starts_with(prefix)) continue;
    const std::string number = upper.substr(prefix.size());
    if (!text::allDigits(number) || number.size() > longest) return 0;
    return static_cast<UINT>(first + leadingInt32(number));
  }
  return 0;
}

std::optional<std::string> fromUtf16(std::string_view bytes, bool bigEndian) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto one = static_cast<unsigned char>(bytes[2 * i]);
    const auto other = static_cast<unsigned char>(bytes[2 * i + 1]);
    text[i] = static_cast<char16_t>(bigEndian ? one << 8U | other : other << 8U | one);
  }
  if (!utf16::isValid(text)) return std::nullopt;
  return utf16::decode(text);
}

std::optional<std::string> fromCodePage(std::string_view bytes, UINT codePage) {
  if (bytes.empty()) return std::string();
  if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return std::nullopt;
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
  if (length <= 0) return std::nullopt;
  std::u16string text(static_cast<std::size_t>(length), u'\0');
  MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, bytes.data(), size, reinterpret_cast<wchar_t*>(text.data()),
                      length);
  return utf16::decode(text);
}

}  // namespace

std::optional<std::string> converted(std::string_view bytes, const std::string& name) {
  if (text::equalNoCase(name, "UTF-16LE")) return fromUtf16(bytes, false);
  if (text::equalNoCase(name, "UTF-16BE")) return fromUtf16(bytes, true);
  if (text::equalNoCase(name, "US-ASCII") || text::equalNoCase(name, "ASCII")) {
    const bool fits =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    return fits ? std::optional(std::string(bytes)) : std::nullopt;
  }
  const UINT codePage = codePageOf(name);
  return codePage == 0 ? std::nullopt : fromCodePage(bytes, codePage);
}

}  // namespace kartix::adapters
