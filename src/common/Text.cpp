#include "common/Text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kartix::text {
namespace {

/// Texts are looked at eight bytes at a time: images are long ones.
constexpr std::uint64_t highBits = 0x8080808080808080;

char upperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

/// Length in bytes of the sequence that starts at `position`; 0 when it is invalid there.
std::size_t sequenceLength(std::string_view text, std::size_t position) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[position + i]); };
  const unsigned char first = byte(0);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t size = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (position + size > text.size()) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // No overlong forms, surrogates or values above U+10FFFF.
  if (first == 0xE0 && byte(1) < 0xA0) return 0;
  if (first == 0xED && byte(1) > 0x9F) return 0;
  if (first == 0xF0 && byte(1) < 0x90) return 0;
  if (first == 0xF4 && byte(1) > 0x8F) return 0;
  return size;
}

std::size_t advance(std::string_view text, std::size_t position, std::size_t count) {
  for (; count > 0 && position < text.size(); --count) {
    position += std::max<std::size_t>(1, sequenceLength(text, position));
  }
  return position;
}

std::string trimOf(std::string_view characters, std::string_view text) {
  const auto first = text.find_first_not_of(characters);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(characters) - first + 1));
}

}  // namespace

std::string trim(std::string_view text) { return trimOf(" ", text); }

std::string trimSpace(std::string_view text) { return trimOf(" \t\n\v\f\r", text); }

std::size_t length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count) position = advance(text, position, 1);
  return count;
}

std::string left(std::string_view text, std::size_t count) {
  // No character takes less than a byte.
  return text.size() <= count ? std::string(text) : mid(text, 0, count);
}

std::string mid(std::string_view text, std::size_t start, std::size_t count) {
  const std::size_t from = advance(text, 0, start);
  return std::string(text.substr(from, advance(text, from, count) - from));
}

std::string_view untilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string replaceAll(std::string_view text, std::string_view what, std::string_view with) {
  std::string result;
  result.reserve(text.size());
  std::size_t position = 0;
  for (auto found = text.find(what); found != std::string_view::npos; found = text.find(what, position)) {
    result.append(text.substr(position, found - position)).append(with);
    position = found + what.size();
  }
  return result.append(text.substr(position));
}

std::string upper(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), upperAscii);
  return result;
}

bool equalNoCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return x == y || upperAscii(x) == upperAscii(y); });
}

bool LessNoCase::operator()(std::string_view a, std::string_view b) const {
  const std::size_t both = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < both; ++i) {
    if (a[i] == b[i]) continue;
    const char x = upperAscii(a[i]);
    const char y = upperAscii(b[i]);
    if (x != y) return x < y;
  }
  return a.size() < b.size();
}

bool allDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::size_t asciiRun(std::string_view text, std::size_t position) {
  std::size_t end = position;
  for (std::uint64_t eight = 0; end + sizeof eight <= text.size(); end += sizeof eight) {
    std::memcpy(&eight, text.data() + end, sizeof eight);
    if ((eight & highBits) != 0) break;
  }
  while (end < text.size() && static_cast<unsigned char>(text[end]) < 0x80) ++end;
  return end - position;
}

std::size_t printableRun(std::string_view text, std::size_t position) {
  constexpr std::uint64_t blanks = 0x2020202020202020;
  std::size_t end = position;
  for (std::uint64_t eight = 0; end + sizeof eight <= text.size(); end += sizeof eight) {
    std::memcpy(&eight, text.data() + end, sizeof eight);
    // The lowest byte that is less than a blank borrows, and so gets its high bit.
    if (((eight | (eight - blanks)) & highBits) != 0) break;
  }
  const auto printable = [](unsigned char byte) { return byte >= ' ' && byte < 0x80; };
  while (end < text.size() && printable(static_cast<unsigned char>(text[end]))) ++end;
  return end - position;
}

bool isValidUtf8(std::string_view bytes) {
  for (std::size_t position = 0; (position += asciiRun(bytes, position)) < bytes.size();) {
    const std::size_t size = sequenceLength(bytes, position);
    if (size == 0) return false;
    position += size;
  }
  return true;
}

char32_t nextCharacter(std::string_view text, std::size_t& position) {
  constexpr char32_t replacement = 0xFFFD;
  const std::size_t size = sequenceLength(text, position);
  if (size == 0) {
    ++position;
    return replacement;
  }
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[position + i]); };
  char32_t character = size == 1 ? byte(0) : byte(0) & (0xFFu >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) character = (character << 6) | (byte(i) & 0x3Fu);
  position += size;
  return character;
}

void append(std::string& text, char32_t character) {
  const auto put = [&](char32_t value) { text.push_back(static_cast<char>(value)); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | (character >> 6));
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | (character >> 18));
    put(0x80 | ((character >> 12) & 0x3F));
    put(0x80 | ((character >> 6) & 0x3F));
    put(0x80 | (character & 0x3F));
  }
}

}  // namespace kartix::text
