#include "adapters/settings/RegEncoding.h"

#include "common/CodePage.h"
#include "common/Text.h"
#include "common/Utf16.h"

namespace kartix::adapters {
namespace {

constexpr std::string_view utf16Mark = "\xFF\xFE";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

}  // namespace

std::string toUtf16(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size() * 2);
  for (const char16_t unit : utf16::encode(utf8)) {
    bytes.push_back(static_cast<char>(unit & 0xFFU));
    bytes.push_back(static_cast<char>(unit >> 8U));
  }
  return bytes;
}

std::optional<std::string> fromUtf16(std::string_view bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  std::u16string text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) |
                                    static_cast<unsigned char>(bytes[2 * i + 1]) << 8U);
  }
  if (!utf16::isValid(text)) return std::nullopt;
  return utf16::decode(text);
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
