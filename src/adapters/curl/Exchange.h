#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstddef>
#include <string_view>

#include "adapters/curl/Answer.h"

namespace kartix::adapters {

/// One request under way: what has gone out, what has come in, and the limits at which it is ended.
class Exchange {
 public:
  Exchange(std::size_t bodySize, std::chrono::seconds stallLimit) : bodySize_(bodySize), stallLimit_(stallLimit) {}

  /// Makes `easy` report to this object, which must outlive the transfer.
  void attach(CURL* easy);

  Answer answer;

  /// The server was reached and the request began.
  bool begun() const { return begun_; }
  bool anythingSent() const { return sent_ > 0; }
  /// An answer has come that can be one: its head is whole, and it does not confirm half a request.
  bool answered() const;
  bool sentCompletely() const { return headSize_ > 0 && sent_ >= headSize_ + bodySize_; }
  /// Why this object ended the transfer.
  bool secondSendingRefused() const { return secondSendingRefused_; }
  bool stalled() const { return stalled_; }

  /// What the server said where a TLS connection was to begin.
  enum class Greeting { none, tls, foreign };
  Greeting greeting() const { return greeting_; }

 private:
  static int onBegin(void* exchange, char*, char*, int, int);
  static int onTraffic(CURL*, curl_infotype type, char* data, std::size_t size, void* exchange);
  static int onProgress(void* exchange, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static std::size_t onHeadLine(const char* data, std::size_t, std::size_t size, void* exchange);
  static std::size_t onBody(const char* data, std::size_t, std::size_t size, void* exchange);

  void noteSent(std::string_view bytes) noexcept;
  void noteGreeting(std::string_view bytes) noexcept;

  std::size_t bodySize_;
  std::chrono::seconds stallLimit_;
  std::chrono::steady_clock::time_point lastByte_;
  std::size_t endSeen_ = 0;   ///< how much of the request's head end the last bytes were
  std::size_t headSize_ = 0;  ///< of the request; 0 until all of the head has gone out
  std::size_t sent_ = 0;
  Greeting greeting_ = Greeting::none;
  bool begun_ = false;
  bool secondSendingRefused_ = false;
  bool stalled_ = false;
};

}  // namespace kartix::adapters
