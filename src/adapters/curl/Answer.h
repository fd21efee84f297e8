#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kartix::adapters {

/// What has been received of an answer.
class Answer {
 public:
  /// Takes one line of the head. False when the answer has become too large.
  bool addHeadLine(std::string_view line);
  /// Takes bytes of the body. False when the answer has become too large.
  bool addBody(std::string_view bytes);

  bool empty() const { return headSize_ == 0; }
  /// Text after the status code, UTF-8.
  const std::string& reason() const { return reason_; }
  const std::string& body() const { return body_; }
  /// Value set last for the cookie `name`; empty when there is none.
  std::string cookie(const std::string& name) const;

  /// Most bytes of a body.
  static constexpr std::size_t bodyLimit = std::size_t{16} * 1024 * 1024;

 private:
  std::size_t headSize_ = 0;
  std::string reason_;
  std::string body_;
  std::map<std::string, std::string> cookies_;
};

}  // namespace kartix::adapters
