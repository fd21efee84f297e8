#pragma once

#include <filesystem>
#include <memory>

#include "platform/HttpLibrary.h"

namespace kartix::adapters {

struct CurlOptions {
  /// PEM file of authorities to trust besides the system's own; empty for none.
  std::filesystem::path caFile;
  /// Longest time to reach the server, name look-up, secure proxy and TLS handshake included.
  int connectSeconds = 30;
  /// Longest time without a byte, in either direction, once the server is reached.
  int stallSeconds = 300;
};

/// HTTP/1.1 for the gateway: TLS 1.2 or newer with the server's certificate and name checked, no redirects, no
/// cookies and no header but those that the component set, no proxy from the environment.
///
/// Connections and TLS sessions are kept for the next request of the same client certificate, key and proxy, towards
/// servers that keep theirs (`HandlePool`). A request of which a byte has gone out is never sent a second time.
/// Requests may run on several threads at once, each request on one.
std::unique_ptr<platform::HttpLibrary> makeCurlHttp(const CurlOptions& options = {});

}  // namespace kartix::adapters
