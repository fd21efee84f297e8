#include "adapters/windows/ui/Text16.h"

#include "common/Text.h"
#include "common/Utf16.h"

namespace kartix::adapters::native {

std::wstring wide(std::string_view utf8) {
  const std::u16string text = utf16::encode(utf8);
  return {text.begin(), text.end()};
}

std::string narrow(std::wstring_view text) { return utf16::decode(std::u16string(text.begin(), text.end())); }

std::wstring wideLines(std::string_view utf8) {
  return wide(text::replaceAll(text::replaceAll(utf8, "\r\n", "\n"), "\n", "\r\n"));
}

}  // namespace kartix::adapters::native
