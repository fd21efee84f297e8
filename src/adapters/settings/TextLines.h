#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::adapters {

/// A text as lines that keep their line ends, so that joining them gives the same text again.
class TextLines {
 public:
  explicit TextLines(std::string_view text);

  std::size_t size() const { return lines_.size(); }
  /// A line without its line end.
  std::string_view operator[](std::size_t index) const;

  /// Puts one line in place of `count` lines from `first` on, with the line end of the last of them.
  void replace(std::size_t first, std::size_t count, const std::string& line);
  /// Inserts a line before line `index`, with the line end that the first line has ("\r\n" when there is none).
  void insert(std::size_t index, const std::string& line);

  std::string join() const;

 private:
  std::vector<std::string> lines_;
  std::string lineEnd_ = "\r\n";
};

/// `text` without blanks and tabs at both ends.
std::string_view withoutBlanks(std::string_view text);

}  // namespace kartix::adapters
