#pragma once

#include <curl/curl.h>

#include <new>
#include <stdexcept>

namespace kartix::adapters {

/// Sets an option. Throws when the library did not take it: a request must not go out without what it was told.
template <class Value>
void setOption(CURL* easy, CURLoption option, Value value) {
  const CURLcode result = curl_easy_setopt(easy, option, value);
  if (result == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
  if (result != CURLE_OK) throw std::runtime_error(curl_easy_strerror(result));
}

}  // namespace kartix::adapters
