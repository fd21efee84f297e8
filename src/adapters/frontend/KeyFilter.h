#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/forms/Control.h"

namespace kartix::adapters::frontend {

/// A text in UTF-16 after an edit, and where the cursor stands in it.
struct Edited {
  std::u16string text;
  std::size_t cursor = 0;
};

/// What becomes of an edit that turned `before` into `after`: the characters that it brought in, typed, pasted or
/// dropped alike, go through the field's key filter.
Edited filterEdit(const forms::TextField& field, std::u16string_view before, const Edited& after);

}  // namespace kartix::adapters::frontend
