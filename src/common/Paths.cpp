#include "common/Paths.h"

namespace kartix {
namespace {

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

std::filesystem::path pathOf(std::string_view utf8) { return std::u8string(utf8.begin(), utf8.end()); }

std::string utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

bool isForeignPath(std::string_view path) {
  using Path = std::filesystem::path;
  if (Path::preferred_separator == '\\' || pathOf(path).is_absolute()) return false;
  const bool drive = path.size() > 1 && path[1] == ':' && isLetter(path[0]);
  return drive || path.find('\\') != std::string_view::npos;
}

}  // namespace kartix
