#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string>
#include <string_view>

#include "common/Utf16.h"

namespace kartix::automation {

/// What the system holds in 16-bit units, as UTF-8. Nothing is the empty text; half a character becomes U+FFFD.
inline std::string fromWide(std::wstring_view text) {
  return utf16::decode({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}
inline std::string fromBstr(BSTR text) { return text ? fromWide({text, SysStringLen(text)}) : std::string(); }

/// A text for the system, which the receiver frees. Raises `std::bad_alloc`.
BSTR toBstr(std::string_view utf8);

}  // namespace kartix::automation
