#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// UTF-8 text. Positions and lengths count characters, not bytes; an invalid byte counts as one character.
namespace kartix::text {

/// `text` without blanks (only blanks) at both ends.
std::string trim(std::string_view text);

/// `text` without white space of any kind (blank, tab, line break) at both ends.
std::string trimSpace(std::string_view text);

/// Number of characters.
std::size_t length(std::string_view text);

/// At most the first `count` characters.
std::string left(std::string_view text, std::size_t count);

/// `count` characters from position `start` (counted from 0), or what there is of them.
std::string mid(std::string_view text, std::size_t start, std::size_t count = std::string_view::npos);

/// The part before the first NUL.
std::string_view untilNul(std::string_view text);

/// `text` with every occurrence of `what` replaced by `with`.
std::string replaceAll(std::string_view text, std::string_view what, std::string_view with);

/// Only ASCII letters change case; enough for host names and setting names.
std::string upper(std::string_view text);
bool equalNoCase(std::string_view a, std::string_view b);

/// Order of texts that are told apart without regard to case, for maps.
struct LessNoCase {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const;
};

/// Number of bytes from `position` on that are ASCII.
std::size_t asciiRun(std::string_view text, std::size_t position = 0);

/// Number of bytes from `position` on that are ASCII and no control characters before the blank.
std::size_t printableRun(std::string_view text, std::size_t position = 0);

/// True when the text is not empty and holds digits only.
bool allDigits(std::string_view text);

bool isValidUtf8(std::string_view bytes);

/// Takes the character at byte `position`, moves `position` past it. An invalid byte gives U+FFFD.
char32_t nextCharacter(std::string_view text, std::size_t& position);
void append(std::string& text, char32_t character);

}  // namespace kartix::text
