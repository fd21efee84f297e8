#include "adapters/settings/TextLines.h"

#include <algorithm>
#include <numeric>

namespace kartix::adapters {
namespace {

/// A file may have been broken off between the two characters of its last line's end.
std::string_view lineEndOf(std::string_view line) {
  if (!line.ends_with('\n')) return line.substr(line.size() - (line.ends_with('\r') ? 1 : 0));
  return line.substr(line.size() - (line.ends_with("\r\n") ? 2 : 1));
}

}  // namespace

TextLines::TextLines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t size = std::min(text.find('\n'), text.size() - 1) + 1;
    lines_.emplace_back(text.substr(0, size));
    text.remove_prefix(size);
  }
  if (!lines_.empty() && lines_.front().ends_with('\n')) lineEnd_ = lineEndOf(lines_.front());
}

std::string_view TextLines::operator[](std::size_t index) const {
  const std::string_view line = lines_[index];
  return line.substr(0, line.size() - lineEndOf(line).size());
}

void TextLines::replace(std::size_t first, std::size_t count, const std::string& line) {
  const std::string end(lineEndOf(lines_[first + count - 1]));
  const auto begin = lines_.begin() + static_cast<std::ptrdiff_t>(first);
  lines_.erase(begin + 1, begin + static_cast<std::ptrdiff_t>(count));
  lines_[first] = line + end;
}

void TextLines::insert(std::size_t index, const std::string& line) {
  if (index > 0 && !lines_[index - 1].ends_with('\n')) {
    lines_[index - 1] += lineEndOf(lines_[index - 1]).empty() ? lineEnd_ : "\n";
  }
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(index), line + lineEnd_);
}

std::string TextLines::join() const { return std::accumulate(lines_.begin(), lines_.end(), std::string()); }

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t";
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace kartix::adapters
