#include "common/CodePage.h"

#include <algorithm>
#include <array>

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
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text::append(utf8, byte >= 0x80 && byte < 0xA0 ? upperControls.at(byte - 0x80) : byte);
  }
  return utf8;
}

std::string toIsoXml(std::string_view utf8) {
  // Measured first: a message with images must not be copied again because it turned out longer.
  std::size_t size = 0;
  for (std::size_t position = 0; position < utf8.size();) {
    const std::size_t run = text::asciiRun(utf8, position);
    size += run;
    position += run;
    if (position == utf8.size()) break;
    const char32_t character = text::nextCharacter(utf8, position);
    size += character <= lastIsoCharacter ? 1 : reference(character).size();
  }
  std::string bytes;
  bytes.reserve(size);
  for (std::size_t position = 0; position < utf8.size();) {
    const std::size_t run = text::asciiRun(utf8, position);
    bytes.append(utf8, position, run);
    position += run;
    if (position == utf8.size()) break;
    const char32_t character = text::nextCharacter(utf8, position);
    if (character <= lastIsoCharacter) {
      bytes.push_back(static_cast<char>(character));
    } else {
      bytes.append(reference(character));
    }
  }
  return bytes;
}

}  // namespace kartix::codepage
