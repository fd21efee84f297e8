#include "adapters/libxml2/Decoding.h"

#include <algorithm>
#include <array>

#include "adapters/libxml2/Conversion.h"
#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view bytes;
  std::size_t markSize;
  const char* encoding;
};

/// Byte order marks, and how UTF-16 begins without one.
constexpr std::array<Signature, 5> signatures = {{{"\xEF\xBB\xBF"sv, 3, "UTF-8"},
                                                  {"\xFF\xFE"sv, 2, "UTF-16LE"},
                                                  {"\xFE\xFF"sv, 2, "UTF-16BE"},
                                                  {"<\0?\0"sv, 0, "UTF-16LE"},
                                                  {"\0<\0?"sv, 0, "UTF-16BE"}}};

constexpr std::size_t longestDeclaration = 512;

bool isWhitespace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_' ||
         c == '.' || c == ':';
}

std::string_view withoutLeadingWhitespace(std::string_view text) {
  text.remove_prefix(
      static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isWhitespace) - text.begin()));
  return text;
}

/// Value of the pseudo attribute `encoding` of the declaration; empty when there is none.
std::string_view declaredEncoding(std::string_view bytes) {
  constexpr std::string_view opening = "<?xml";
  constexpr std::string_view attribute = "encoding";
  if (!bytes.starts_with(opening)) return {};
  std::string_view declaration = bytes.substr(0, longestDeclaration);
  declaration = declaration.substr(0, declaration.find("?>"));
  for (auto at = declaration.find(attribute); at != std::string_view::npos;
       at = declaration.find(attribute, at + 1)) {
    std::string_view rest = withoutLeadingWhitespace(declaration.substr(at + attribute.size()));
    if (!isWhitespace(declaration[at - 1]) || !rest.starts_with('=')) continue;
    rest = withoutLeadingWhitespace(rest.substr(1));
    if (!rest.starts_with('"') && !rest.starts_with('\'')) return {};
    const auto end = rest.find(rest.front(), 1);
    return end == std::string_view::npos ? std::string_view() : rest.substr(1, end - 1);
  }
  return {};
}

std::optional<std::string> checkedUtf8(std::string_view bytes) {
  if (!text::isValidUtf8(bytes)) return std::nullopt;
  return std::string(bytes);
}

std::optional<std::string> decodeAs(std::string_view bytes, std::string_view encoding) {
  if (text::equalNoCase(encoding, "UTF-8")) return checkedUtf8(bytes);
  // Gives the five bytes that the code page leaves undefined a meaning, as everywhere else.
  if (text::equalNoCase(encoding, "windows-1252")) return codepage::fromAnsi(bytes);
  // What the gateway sends.
  if (text::equalNoCase(encoding, "ISO-8859-1")) return codepage::fromIso(bytes);
  // A declaration that could be read byte by byte cannot be right about these.
  if (text::upper(encoding).starts_with("UTF-16") || text::upper(encoding).starts_with("UTF-32")) return std::nullopt;
  if (!std::all_of(encoding.begin(), encoding.end(), isNameCharacter)) return std::nullopt;
  return converted(bytes, std::string(encoding));
}

}  // namespace

std::optional<std::string> decodeXml(std::string_view bytes) {
  for (const Signature& signature : signatures) {
    if (!bytes.starts_with(signature.bytes)) continue;
    bytes.remove_prefix(signature.markSize);
    return signature.encoding == "UTF-8"sv ? checkedUtf8(bytes) : converted(bytes, signature.encoding);
  }
  const std::string_view declared = declaredEncoding(bytes);
  if (!declared.empty()) return decodeAs(bytes, declared);
  return text::isValidUtf8(bytes) ? std::string(bytes) : codepage::fromAnsi(bytes);
}

}  // namespace kartix::adapters
