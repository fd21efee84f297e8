#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kartix::simulator {

/// Largest body of a request, in bytes.
inline constexpr std::size_t largestRequest = std::size_t{64} << 20U;

/// Files in PEM form.
struct TlsFiles {
  std::string certificate;  ///< of the server, with its chain
  std::string key;          ///< without pass phrase
  std::string clientCa;     ///< demand a client certificate of this authority; empty for none
};

struct HttpRequest {
  std::string path;          ///< as it came, an absolute address too
  std::string cookieHeader;  ///< empty when there is none
  /// Reads the body; nothing when it is broken off or too large. Need not be called before an answer is given.
  std::function<std::optional<std::string>()> readBody;
};

struct HttpAnswer {
  enum class Delivery {
    whole,
    half,    ///< the head, half of the body, and the connection ends
    nothing  ///< the connection ends without a byte
  };

  int status = 200;
  std::string contentType = "text/xml";
  std::string body = {};
  std::vector<std::string> cookies = {};  ///< to be set, each as "name=value"
  std::size_t padding = 0;                ///< blanks that follow the body
  Delivery delivery = Delivery::whole;
  bool close = false;  ///< the connection ends after the answer
};

/// A small HTTP/1.1 server, with TLS 1.2 or newer if wanted, on threads of its own.
class HttpServer {
 public:
  /// Answers a POST. Called from several threads, never throws.
  using Post = std::function<HttpAnswer(const HttpRequest&)>;
  /// Text for a GET of any path.
  using Page = std::function<std::string()>;

  /// Listens on `host`:`port` when it returns; port 0 takes any free one. Throws `StartFailure`, `BadFile`.
  HttpServer(const std::string& host, int port, const std::optional<TlsFiles>& tls, Post post, Page page);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  int port() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace kartix::simulator
