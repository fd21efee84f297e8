#include "adapters/curl/Exchange.h"

namespace kartix::adapters {
namespace {

constexpr std::string_view endOfHead = "\r\n\r\n";

}  // namespace

void Exchange::attach(CURL* easy) {
  curl_easy_setopt(easy, CURLOPT_PREREQFUNCTION, onBegin);
  curl_easy_setopt(easy, CURLOPT_PREREQDATA, this);
  curl_easy_setopt(easy, CURLOPT_VERBOSE, 1L);
  curl_easy_setopt(easy, CURLOPT_DEBUGFUNCTION, onTraffic);
  curl_easy_setopt(easy, CURLOPT_DEBUGDATA, this);
  curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, onProgress);
  curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
  curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, onHeadLine);
  curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
  curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, onBody);
  curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
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
  if (type == CURLINFO_HEADER_OUT || type == CURLINFO_DATA_OUT) self.noteSent({data, size});
  return 0;
}

void Exchange::noteSent(std::string_view bytes) {
  if (!begun_) return;  // still talking to the secure proxy
  sent_ += bytes.size();
  if (headSize_ > 0) return;
  // The end of the head may be split between two calls, and the body may come along with it.
  head_.append(bytes);
  const auto end = head_.find(endOfHead);
  if (end == std::string::npos) return;
  headSize_ = end + endOfHead.size();
  head_.clear();
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
  return self.answer.addHeadLine({data, size}) ? size : 0;
}

std::size_t Exchange::onBody(const char* data, std::size_t, std::size_t size, void* exchange) {
  auto& self = *static_cast<Exchange*>(exchange);
  return self.answer.addBody({data, size}) ? size : 0;
}

}  // namespace kartix::adapters
