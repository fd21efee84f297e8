#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "adapters/curl/KeepPromise.h"

namespace kartix::adapters {

/// What has been received of an answer. Interim answers (1xx) are passed over.
class Answer {
 public:
  /// Takes one line of a head, or of the trailer of a body, which changes nothing. False when the answer has become
  /// too large, or cannot be one.
  bool addHeadLine(std::string_view line);
  /// Takes bytes of the body. False when the answer has become too large.
  bool addBody(std::string_view bytes);

  /// Nothing has come.
  bool empty() const { return headSize_ == 0; }
  /// The head has come as far as the empty line that ends it.
  bool headComplete() const { return part_ == Part::body; }
  bool tooLarge() const { return tooLarge_; }
  /// What came is no HTTP.
  bool broken() const { return broken_; }

  std::int32_t status() const { return status_; }
  /// Text after the status code, UTF-8.
  const std::string& reason() const { return reason_; }
  const std::string& body() const { return body_; }
  /// Value set last for the cookie `name`; empty when there is none.
  std::string cookie(const std::string& name) const;
  /// What it says about its connection.
  const KeepPromise& promise() const { return promise_; }

  /// Most bytes of a body.
  static constexpr std::size_t bodyLimit = std::size_t{16} * 1024 * 1024;

 private:
  enum class Part { statusLine, fields, body };

  bool takeStatusLine(std::string_view line);
  bool takeField(std::string_view line);
  bool breakOff();

  Part part_ = Part::statusLine;
  std::size_t headSize_ = 0;
  bool tooLarge_ = false;
  bool broken_ = false;
  std::int32_t status_ = 0;
  std::string reason_;
  std::string contentLength_;
  std::map<std::string, std::string> cookies_;
  KeepPromise promise_;
  std::string body_;
};

}  // namespace kartix::adapters
