#include "automation/ErrorText.h"

#include <algorithm>
#include <array>

namespace kartix::automation {
namespace {

std::array<char, 512>& place() noexcept {
  thread_local std::array<char, 512> text{};
  return text;
}

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

void setErrorText(std::string_view text) noexcept {
  auto& kept = place();
  std::size_t length = std::min(text.size(), kept.size() - 1);
  if (length < text.size()) {
    while (length > 0 && continuesCharacter(text[length])) --length;
  }
  *std::copy_n(text.begin(), length, kept.begin()) = '\0';
}

const char* errorText() noexcept { return place().data(); }

}  // namespace kartix::automation
