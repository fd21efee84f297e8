#include "adapters/windows/Wide.h"

#include <array>
#include <cstdio>

#include "adapters/windows/System.h"
#include "common/Text.h"
#include "common/Utf16.h"

namespace kartix::adapters::windows {

std::wstring wide(std::string_view utf8) {
  const std::u16string text = utf16::encode(utf8);
  return {text.begin(), text.end()};
}

std::string narrow(std::wstring_view text) { return utf16::decode(std::u16string(text.begin(), text.end())); }

std::string systemText(unsigned long code) {
  std::array<wchar_t, 512> text{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                      text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string result = text::trimSpace(narrow({text.data(), length}));
  if (!result.empty()) return result;
  std::array<char, sizeof "Fehler 0x00000000"> number{};
  std::snprintf(number.data(), number.size(), "Fehler 0x%08lX", code);
  return number.data();
}

}  // namespace kartix::adapters::windows
