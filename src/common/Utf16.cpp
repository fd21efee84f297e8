#include "common/Utf16.h"

#include <cstddef>

#include "common/Text.h"

namespace kartix::utf16 {
namespace {

constexpr char32_t surrogates = 0xD800;
constexpr char32_t lowSurrogates = 0xDC00;
constexpr char32_t afterSurrogates = 0xE000;
constexpr char32_t supplementary = 0x10000;
constexpr unsigned surrogateBits = 10;
constexpr char32_t surrogateMask = 0x3FF;
constexpr char32_t replacement = 0xFFFD;

bool isSurrogate(char32_t unit) { return unit >= surrogates && unit < afterSurrogates; }

/// Takes the character at `position`, moves `position` past it; half a character stays a surrogate.
char32_t nextCharacter(std::u16string_view text, std::size_t& position) {
  const char32_t unit = text[position++];
  if (!isSurrogate(unit) || unit >= lowSurrogates || position == text.size()) return unit;
  const char32_t low = text[position];
  if (low < lowSurrogates || low >= afterSurrogates) return unit;
  ++position;
  return supplementary + ((unit & surrogateMask) << surrogateBits) + (low & surrogateMask);
}

}  // namespace

std::u16string encode(std::string_view utf8) {
  std::u16string text;
  text.reserve(utf8.size());
  for (std::size_t position = 0; position < utf8.size();) {
    const char32_t character = text::nextCharacter(utf8, position);
    if (character < supplementary) {
      text.push_back(static_cast<char16_t>(character));
    } else {
      text.push_back(static_cast<char16_t>(surrogates + ((character - supplementary) >> surrogateBits)));
      text.push_back(static_cast<char16_t>(lowSurrogates + ((character - supplementary) & surrogateMask)));
    }
  }
  return text;
}

std::string decode(std::u16string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (std::size_t position = 0; position < text.size();) {
    const char32_t character = nextCharacter(text, position);
    text::append(utf8, isSurrogate(character) ? replacement : character);
  }
  return utf8;
}

bool isValid(std::u16string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    if (isSurrogate(nextCharacter(text, position))) return false;
  }
  return true;
}

}  // namespace kartix::utf16
