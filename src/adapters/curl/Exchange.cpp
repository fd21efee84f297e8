#include "adapters/curl/Exchange.h"

#include "adapters/curl/Options.h"

namespace kartix::adapters {
namespace {

constexpr std::string_view endOfHead = "\r\n\r\n";

/// False when `take` is, or cannot go on. Nothing may be thrown through the library, which ends the transfer then.
template <class Take>
bool taken(Take take) noexcept {
  try {
    return take();
  } catch (...) {
    return false;
  }
}

}  // namespace

void Exchange::attach(CURL* easy) {
  setOption(easy, CURLOPT_PREREQFUNCTION, onBegin);
  setOption(easy, CURLOPT_PREREQDATA, this);
  setOption(easy, CURLOPT_VERBOSE, 1L);
  setOption(easy, CURLOPT_DEBUGFUNCTION, onTraffic);
  setOption(easy, CURLOPT_DEBUGDATA, this);
  setOption(easy, CURLOPT_NOPROGRESS, 0L);
  setOption(easy, CURLOPT_XFERINFOFUNCTION, onProgress);
  setOption(easy, CURLOPT_XFERINFODATA, this);
  setOption(easy, CURLOPT_HEADERFUNCTION, onHeadLine);
  setOption(easy, CURLOPT_HEADERDATA, this);
  setOption(easy, CURLOPT_WRITEFUNCTION, onBody);
  setOption(easy, CURLOPT_WRITEDATA, this);
}

int Exchange::onBegin(void* exchange, char*, char*, int, int) {
  auto& self = *static_cast<Exchange*>(exchange);
  // The library starts over by itself when a kept connection ends before an answer. The server may have taken the
  // request nevertheless, and a second order is worse than a failed one.
  if (self.anythingSent()) {
    self.secondSendingRefused_ = true;
    return CURL_PREREQFUNC_ABORT;
  }
  self.begun_ = true;
  self.lastByte_ = std::chrono::steady_clock::now();
  return CURL_PREREQFUNC_OK;
}

int Exchange::onTraffic(CURL*, curl_infotype type, char* data, std::size_t size, void* exchange) {
  if (type == CURLINFO_TEXT) return 0;
  auto& self = *static_cast<Exchange*>(exchange);
  self.lastByte_ = std::chrono::steady_clock::now();
  // A line that goes on from the one above is obsolete. Where it comes first, the library (7.88) would join it to the
  // last field of the former answer, whose memory it has given back. Now it makes a field without a name of it.
  const bool folded = type == CURLINFO_HEADER_IN && size > 0 && (*data == ' ' || *data == '\t');
  if (folded) *data = ':';
  if (type == CURLINFO_SSL_DATA_IN) self.noteGreeting({data, size});
  if (type == CURLINFO_HEADER_OUT || type == CURLINFO_DATA_OUT) self.noteSent({data, size});
  return 0;
}

/// The library hands over the head of each TLS record, or the bytes it took for one: kind and version come first.
void Exchange::noteGreeting(std::string_view bytes) noexcept {
  constexpr unsigned char firstKind = 20;
  constexpr unsigned char lastKind = 24;
  constexpr char version = 3;
  if (greeting_ != Greeting::none || bytes.size() < 2) return;
  const auto kind = static_cast<unsigned char>(bytes[0]);
  greeting_ = kind >= firstKind && kind <= lastKind && bytes[1] == version ? Greeting::tls : Greeting::foreign;
}

void Exchange::noteSent(std::string_view bytes) noexcept {
  if (!begun_) return;  // still talking to the secure proxy
  // The end of the head may be split between two calls, and the body may come along with it.
  for (std::size_t i = 0; headSize_ == 0 && i < bytes.size(); ++i) {
    if (bytes[i] == endOfHead[endSeen_]) {
      ++endSeen_;
    } else {
      endSeen_ = bytes[i] == endOfHead.front() ? 1 : 0;
    }
    if (endSeen_ == endOfHead.size()) headSize_ = sent_ + i + 1;
  }
  sent_ += bytes.size();
}

bool Exchange::answered() const {
  constexpr std::int32_t firstUnsuccessful = 300;
  return answer.headComplete() && (sentCompletely() || answer.status() >= firstUnsuccessful);
}

int Exchange::onProgress(void* exchange, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  auto& self = *static_cast<Exchange*>(exchange);
  self.stalled_ = self.begun_ && std::chrono::steady_clock::now() - self.lastByte_ >= self.stallLimit_;
  return self.stalled_ ? 1 : 0;
}

std::size_t Exchange::onHeadLine(const char* data, std::size_t, std::size_t size, void* exchange) {
  auto& self = *static_cast<Exchange*>(exchange);
  return taken([&] { return self.answer.addHeadLine({data, size}); }) ? size : 0;
}

std::size_t Exchange::onBody(const char* data, std::size_t, std::size_t size, void* exchange) {
  auto& self = *static_cast<Exchange*>(exchange);
  return taken([&] { return self.answer.addBody({data, size}); }) ? size : 0;
}

}  // namespace kartix::adapters
