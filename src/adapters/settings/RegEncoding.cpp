#include "adapters/settings/RegEncoding.h"

#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

constexpr std::string_view utf16Mark = "\xFF\xFE";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

constexpr char32_t surrogates = 0xD800;
constexpr char32_t lowSurrogates = 0xDC00;
constexpr char32_t afterSurrogates = 0xE000;
constexpr char32_t supplementary = 0x10000;
constexpr unsigned surrogateBits = 10;
constexpr char32_t surrogateMask = 0x3FF;

}  // namespace

std::string toUtf16(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size() * 2);
  const auto put = [&](char32_t unit) {
    bytes.push_back(static_cast<char>(unit & 0xFFU));
    bytes.push_back(static_cast<char>(unit >> 8U));
  };
  for (std::size_t position = 0; position < utf8.size();) {
    const char32_t character = text::nextCharacter(utf8, position);
    if (character < supplementary) {
      put(character);
    } else {
      put(surrogates + ((character - supplementary) >> surrogateBits));
      put(lowSurrogates + ((character - supplementary) & surrogateMask));
    }
  }
  return bytes;
}

std::optional<std::string> fromUtf16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  const auto unit = [&](std::size_t position) -> char32_t {
    return static_cast<unsigned char>(bytes[position]) |
           static_cast<char32_t>(static_cast<unsigned char>(bytes[position + 1])) << 8U;
  };
  std::string utf8;
  utf8.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size(); position += 2) {
    char32_t character = unit(position);
    if (character >= surrogates && character < afterSurrogates) {
      position += 2;
      if (character >= lowSurrogates || position >= bytes.size()) return std::nullopt;
      const char32_t low = unit(position);
      if (low < lowSurrogates || low >= afterSurrogates) return std::nullopt;
      character = supplementary + ((character & surrogateMask) << surrogateBits) + (low & surrogateMask);
    }
    text::append(utf8, character);
  }
  return utf8;
}

std::optional<std::string> decodeRegFile(std::string_view bytes, RegEncoding& encoding) {
  if (bytes.starts_with(utf16Mark)) {
    encoding = RegEncoding::utf16;
    return fromUtf16(bytes.substr(utf16Mark.size()));
  }
  if (bytes.starts_with("REGEDIT4")) {
    encoding = RegEncoding::ansi;
    return codepage::fromAnsi(bytes);
  }
  encoding = RegEncoding::utf8;
  if (bytes.starts_with(utf8Mark)) {
    encoding = RegEncoding::utf8Mark;
    bytes.remove_prefix(utf8Mark.size());
  }
  if (!text::isValidUtf8(bytes)) return std::nullopt;
  return std::string(bytes);
}

std::string encodeRegFile(std::string_view text, RegEncoding encoding) {
  switch (encoding) {
    case RegEncoding::utf16:
      return std::string(utf16Mark) + toUtf16(text);
    case RegEncoding::utf8Mark:
      return std::string(utf8Mark).append(text);
    case RegEncoding::ansi:
      return codepage::toAnsi(text);
    case RegEncoding::utf8:
      break;
  }
  return std::string(text);
}

}  // namespace kartix::adapters
