#pragma once

#include <openssl/ssl.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "support/Certificates.h"
#include "support/Listener.h"

namespace kartix::test {

/// A request as it came over the wire.
struct RecordedRequest {
  std::string head;    ///< request line and headers, the empty line included
  std::string body;    ///< as many bytes as Content-Length says
  int connection = 0;  ///< number of its connection, counted from 0
};

/// What the server does with a request.
struct Reply {
  enum class Then { keepOpen, close, drop, reset, hang };

  std::string bytes;  ///< sent as they stand; none for no answer
  Then then =
      Then::keepOpen;  ///< `drop` closes without TLS's farewell; `hang` sends nothing more until the server goes
  std::chrono::milliseconds after{};  ///< what comes then
};

/// Bytes of a complete answer. `headers` are whole lines with their ends.
std::string answer(const std::string& body, const std::string& status = "200 OK", const std::string& headers = "");

struct TlsWishes {
  PemFiles files;
  std::string clientCa;  ///< demand a client certificate of this authority; empty for none
  bool onlyTls12 = false;
};

/// A scripted HTTP server on a loopback port. It knows nothing of HTTP but where a request ends.
class LoopbackServer {
 public:
  using Script = std::function<Reply(const RecordedRequest&)>;
  /// True when the head alone is enough, the body is then not read.
  using Impatience = std::function<bool(const RecordedRequest&)>;

  explicit LoopbackServer(Script script, const std::optional<TlsWishes>& tls = std::nullopt,
                          Impatience impatience = nullptr);
  /// Replies in turn; the last one is given again and again.
  explicit LoopbackServer(std::vector<Reply> replies, const std::optional<TlsWishes>& tls = std::nullopt);

  std::string port() const { return listener_.port(); }
  int connections() const { return listener_.connections(); }
  std::vector<RecordedRequest> requests() const;
  /// Drops what `requests` gives: a server that runs for long would keep it all.
  void forgetRequests();

 private:
  void serve(int socket, int number);
  Reply replyTo(const RecordedRequest& request);

  Script script_;
  Impatience impatience_;
  std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> tls_;
  mutable std::mutex mutex_;
  std::vector<RecordedRequest> requests_;
  Listener listener_;
};

/// A proxy that opens tunnels, to loopback ports only, whatever host is asked for.
class ConnectProxy {
 public:
  /// `refusal` is a status such as "403 Forbidden" for a proxy that opens none.
  explicit ConnectProxy(std::string refusal = "");

  std::string address() const { return "127.0.0.1:" + listener_.port(); }
  /// Heads of the requests for a tunnel.
  std::vector<std::string> requests() const;

 private:
  void serve(int socket);

  std::string refusal_;
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
  Listener listener_;
};

}  // namespace kartix::test
