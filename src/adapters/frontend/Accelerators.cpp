#include "adapters/frontend/Accelerators.h"

#include <cctype>
#include <set>

#include "common/Text.h"

namespace kartix::adapters::frontend {
namespace {

/// Letters that every keyboard has.
bool usable(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char upper(char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); }

/// Whatever is not ASCII is taken for a letter: the captions are German.
bool inWord(char c) { return usable(c) || (c >= '0' && c <= '9') || static_cast<unsigned char>(c) >= 0x80; }

bool beginsWord(std::string_view caption, std::size_t at) { return at == 0 || !inWord(caption[at - 1]); }

char choose(std::string_view caption, const std::set<char>& taken) {
  for (const bool wordsOnly : {true, false}) {
    for (std::size_t i = 0; i < caption.size(); ++i) {
      if (wordsOnly && !beginsWord(caption, i)) continue;
      if (usable(caption[i]) && !taken.contains(upper(caption[i]))) return caption[i];
    }
  }
  return 0;
}

/// Where `letter` is marked: at the beginning of a word if it stands there.
std::size_t place(std::string_view caption, char letter) {
  if (letter == 0) return std::string_view::npos;
  for (std::size_t i = 0; i < caption.size(); ++i) {
    if (caption[i] == letter && beginsWord(caption, i)) return i;
  }
  return caption.find(letter);
}

}  // namespace

std::vector<char> chooseAccelerators(const std::vector<std::string>& captions) {
  std::vector<char> letters;
  std::set<char> taken;
  for (const std::string& caption : captions) {
    const char letter = choose(caption, taken);
    letters.push_back(letter);
    if (letter != 0) taken.insert(upper(letter));
  }
  return letters;
}

std::string withAccelerator(std::string_view caption, char letter) {
  const std::size_t at = place(caption, letter);
  if (at == std::string_view::npos) return text::replaceAll(caption, "&", "&&");
  return text::replaceAll(caption.substr(0, at), "&", "&&") + "&" + text::replaceAll(caption.substr(at), "&", "&&");
}

}  // namespace kartix::adapters::frontend
