#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string>

#include "adapters/curl/Exchange.h"
#include "adapters/curl/HandlePool.h"

namespace kartix::adapters {

/// How far a failed transfer came.
struct Failure {
  CURLcode result;
  bool throughProxy;
  bool tunnelOpen;  ///< the secure proxy has opened the way to the server
  Handle::TlsEvents tls;
};

/// Code of `platform::http_error` for a transfer that failed.
std::int32_t errorOf(const Failure& failure, const Exchange& exchange);

/// German text of a code.
std::string errorText(std::int32_t code);

}  // namespace kartix::adapters
