#include "adapters/windows/ui/Text16.h"

#include "common/Text.h"

namespace kartix::adapters::native {

std::wstring wideLines(std::string_view utf8) {
  return wide(text::replaceAll(text::replaceAll(utf8, "\r\n", "\n"), "\n", "\r\n"));
}

}  // namespace kartix::adapters::native
