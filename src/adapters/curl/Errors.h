#pragma once

#include <curl/curl.h>

#include <cstdint>
#include <string>

#include "adapters/curl/Exchange.h"
#include "adapters/curl/HandlePool.h"
#include "platform/HttpLibrary.h"

namespace kartix::adapters {

/// How far a failed transfer came.
struct Failure {
  CURLcode result;
  bool throughProxy;
  bool tunnelOpen;  ///< the secure proxy has opened the way to the server
  Handle::TlsEvents tls;
  long verification;  ///< what OpenSSL said of the server's certificate
};

/// Code of `platform::http_error` for a transfer that failed.
std::int32_t errorOf(const Failure& failure, const Exchange& exchange);

/// Why no TLS connection came about in a transfer that failed. `code` is what `errorOf` has given.
platform::TlsFault tlsFaultOf(const Failure& failure, const Exchange& exchange, std::int32_t code);

/// German text of a code.
std::string errorText(std::int32_t code);

}  // namespace kartix::adapters
