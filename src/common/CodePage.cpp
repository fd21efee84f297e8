#include "common/CodePage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "common/Text.h"

namespace kartix::codepage {
namespace {

/// Characters of the bytes 0x80 to 0x9F.
constexpr std::array<char32_t, 32> upperControls = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char32_t lastIsoCharacter = 0xFF;

std::string reference(char32_t character) {
  return "&#" + std::to_string(static_cast<unsigned long>(character)) + ";";
}

/// UTF-8 of bytes of which those that are no ASCII are each the character that `meaning` gives.
template <class Meaning>
std::string decoded(std::string_view bytes, Meaning meaning) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size(); ++position) {
    const std::size_t run = text::asciiRun(bytes, position);
    utf8.append(bytes, position, run);
    position += run;
    if (position < bytes.size()) text::append(utf8, meaning(static_cast<unsigned char>(bytes[position])));
  }
  return utf8;
}

/// UTF-8 XML text to ISO-8859-1 with references.
std::string withReferences(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    const std::size_t run = text::asciiRun(utf8, position);
    bytes.append(utf8, position, run);
    position += run;
    if (position == utf8.size()) break;
    const char32_t character = text::nextCharacter(utf8, position);
    character > lastIsoCharacter ? bytes.append(reference(character)) : bytes.append(1, static_cast<char>(character));
  }
  return bytes;
}

}  // namespace

char toAnsiByte(char32_t character) noexcept {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto* const found = std::find(upperControls.begin(), upperControls.end(), character);
  if (found == upperControls.end()) return '?';
  return static_cast<char>(0x80 + (found - upperControls.begin()));
}

std::string toAnsi(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    bytes.push_back(toAnsiByte(text::nextCharacter(utf8, position)));
  }
  return bytes;
}

std::string fromAnsi(std::string_view bytes) {
  return decoded(bytes, [](unsigned char byte) { return byte < 0xA0 ? upperControls.at(byte - 0x80) : byte; });
}

std::string fromIso(std::string_view bytes) {
  return decoded(bytes, [](unsigned char byte) { return char32_t{byte}; });
}

std::string toIsoXml(std::string utf8) {
  // In place as far as nothing gets longer than it was: a message with images is large.
  std::size_t from = 0;
  std::size_t to = 0;
  while (from < utf8.size()) {
    const std::size_t run = text::asciiRun(utf8, from);
    if (to < from) std::memmove(&utf8[to], &utf8[from], run);
    from += run;
    to += run;
    if (from == utf8.size()) break;
    std::size_t next = from;
    const char32_t character = text::nextCharacter(utf8, next);
    if (character > lastIsoCharacter) break;
    from = next;
    utf8[to++] = static_cast<char>(character);
  }
  const std::string rest = withReferences(std::string_view(utf8).substr(from));
  utf8.resize(to);
  return std::move(utf8.append(rest));
}

}  // namespace kartix::codepage
