#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kartix::platform {

/// Error codes of the HTTP client library. They never change their meaning.
namespace http_error {
inline constexpr std::int32_t unknown = -1;
inline constexpr std::int32_t nameNotFound = -20;
inline constexpr std::int32_t connectionRefused = -21;
inline constexpr std::int32_t tlsFailed = -22;  ///< handshake or check of the server's certificate
inline constexpr std::int32_t secureProxyNotReachable = -23;
inline constexpr std::int32_t timedOut = -24;
inline constexpr std::int32_t clientCertificateUnusable = -25;  ///< certificate or key missing or not fitting
inline constexpr std::int32_t answerBrokenOff = -26;
inline constexpr std::int32_t answerTooLarge = -27;
}  // namespace http_error

/// What kept a request from an encrypted connection to the server.
enum class TlsFault {
  none,         ///< nothing, or none was wanted, or the server was not even reached
  untrusted,    ///< nobody whom this machine trusts has issued the server's certificate
  wrongName,    ///< the certificate is for another server
  expired,      ///< the certificate's time is over
  notYetValid,  ///< the certificate's time has not come
  noTls,        ///< what the server says is not TLS
  closed,       ///< the server ended the connection before it said anything
  other,
};

/// One request and its answer. Setters take UTF-8, the body takes the bytes that go on the wire.
class HttpRequest {
 public:
  virtual ~HttpRequest() = default;

  /// 0 on success. `port` is decimal text.
  virtual std::int32_t TESSELHTTPsetServer(std::string_view server, std::string_view port) = 0;
  /// 12 on success.
  virtual std::int32_t TESSELHTTPsetMethod(std::string_view method) = 0;
  virtual void TESSELHTTPsetContentType(std::string_view type) = 0;
  /// 0 on success. `path` goes on the wire as it stands, an absolute address too; a control character in it is
  /// refused.
  virtual std::int32_t TESSELHTTPsetPath(std::string_view path) = 0;
  /// 0 on success.
  virtual std::int32_t TESSELHTTPsetBody(std::string bytes) = 0;
  virtual void TESSELHTTPclearCookies() = 0;
  virtual void TESSELHTTPaddCookie(std::string_view name, std::string_view value) = 0;
  /// Switches the request to TLS.
  virtual void TESSELHTTPsetHttpS() = 0;
  /// Client certificate and private key, PEM files, with the pass phrase of the key.
  virtual void TESSELHTTPsetPEM(std::string_view certificate, std::string_view key, std::string_view phrase) = 0;
  /// Routes the request through the proxy at `address` ("host:port").
  virtual void TESSELHTTPsetSecureProxy(std::string_view address) = 0;
  virtual void TESSELHTTPclearSecureProxy() = 0;

  /// Keeps the request off connections that are already open: a server may have ended one of those without a word,
  /// and it would stay unknown whether the request was taken.
  virtual void useFreshConnection() = 0;

  /// Sends the request and waits for the answer: the HTTP status code, or one of `http_error`.
  virtual std::int32_t TESSELHTTPsend() = 0;
  /// True once every byte of the request has left this machine, whatever came of the answer.
  virtual bool requestSentCompletely() const = 0;

  /// Tells more about a `TESSELHTTPsend` that came to nothing.
  virtual TlsFault tlsFault() const = 0;

  /// HTTP status text of the answer, at most `size` bytes; empty when there is none.
  virtual std::string TESSELHTTPgetResponseDesc(std::size_t size) const = 0;
  /// Body of the answer as received, at most 16 MiB.
  virtual const std::string& TESSELHTTPgetResponseBody() const = 0;
  /// Value that the answer set for cookie `name`, the last one when set twice; empty when it did not set it.
  virtual std::string TESSELHTTPgetSetCookie(std::string_view name) const = 0;
};

/// The HTTP client library behind the gateway's transport.
class HttpLibrary {
 public:
  virtual ~HttpLibrary() = default;

  /// Version as major * 100000 + minor * 1000 + build, or -1 when the library is not to be had.
  virtual std::int32_t TESSELHTTPgetDLLVersion() = 0;
  /// A new request, or nothing when none can be made.
  virtual std::unique_ptr<HttpRequest> TESSELHTTPCreate() = 0;
  /// German text of one of `http_error`.
  virtual std::string TESSELHTTPgetErrorDesc(std::int32_t code) = 0;
  /// Base64 of `bytes` on one line without breaks; time and memory grow with the input alone.
  virtual std::string TESSELHTTPbase64encode(std::string_view bytes) = 0;
};

}  // namespace kartix::platform
