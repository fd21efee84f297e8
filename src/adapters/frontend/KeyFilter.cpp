#include "adapters/frontend/KeyFilter.h"

#include <algorithm>

#include "common/Text.h"
#include "common/Utf16.h"

namespace kartix::adapters::frontend {
namespace {

/// Both in UTF-8.
std::string passing(const forms::TextField& field, const std::string& typed) {
  std::string passed;
  for (std::size_t at = 0; at < typed.size();) {
    if (const auto taken = field.userKey(text::nextCharacter(typed, at))) text::append(passed, *taken);
  }
  return passed;
}

}  // namespace

Edited filterEdit(const forms::TextField& field, std::u16string_view before, const Edited& after) {
  if (!field.onKeyPress) return after;
  const std::u16string_view text = after.text;
  const std::size_t shorter = std::min(before.size(), text.size());
  std::size_t head = 0;
  while (head < shorter && before[head] == text[head]) ++head;
  std::size_t tail = 0;
  while (tail < shorter - head && before[before.size() - 1 - tail] == text[text.size() - 1 - tail]) ++tail;
  const std::u16string_view inserted = text.substr(head, text.size() - head - tail);
  Edited passed;
  passed.text = text.substr(0, head);
  passed.text += utf16::encode(passing(field, utf16::decode(inserted)));
  passed.text += text.substr(text.size() - tail);
  const std::size_t behind = text.size() - std::max(after.cursor, head + inserted.size());
  passed.cursor = passed.text.size() - behind;
  return passed;
}

}  // namespace kartix::adapters::frontend
