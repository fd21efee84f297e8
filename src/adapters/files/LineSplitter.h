#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// Makes lines of the pieces in which a file is read, and hands on those of at most `longest` bytes.
class LineSplitter {
 public:
  LineSplitter(std::size_t longest, const std::function<void(std::string_view)>& take)
      : longest_(longest), take_(take) {}

  void add(std::string_view piece) {
    for (std::size_t end = piece.find('\n'); end != std::string_view::npos; end = piece.find('\n')) {
      if (!tooLong_ && line_.size() + end <= longest_) take_(line_.append(piece.substr(0, end)));
      line_.clear();
      tooLong_ = false;
      piece.remove_prefix(end + 1);
    }
    tooLong_ = tooLong_ || line_.size() + piece.size() > longest_;
    if (!tooLong_) line_.append(piece);
  }

 private:
  std::size_t longest_;
  const std::function<void(std::string_view)>& take_;
  std::string line_;
  bool tooLong_ = false;
};

}  // namespace kartix::adapters
