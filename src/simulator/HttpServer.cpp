#include "simulator/HttpServer.h"

#include <httplib.h>
#include <openssl/err.h>
#include <openssl/ssl.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <thread>
#include <utility>

#include "simulator/Connection.h"
#include "simulator/Failures.h"
#include "simulator/System.h"

namespace kartix::simulator {
namespace {

using TlsContext = std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)>;

/// The oldest of the library's errors is the cause.
BadFile badFile(const std::string& what, const std::string& file) {
  const unsigned long error = ERR_get_error();
  const char* const known = ERR_reason_error_string(error);
  const std::string reason = ERR_SYSTEM_ERROR(error) ? std::strerror(ERR_GET_REASON(error))
                             : known                 ? known
                                                     : "not a fitting PEM file";
  ERR_clear_error();
  BadFile failure(what + " cannot be used: " + file + ": " + reason);
  return failure;
}

/// A key with a pass phrase is refused, where the library would ask on the terminal.
int noPassPhrase(char*, int, int, void*) { return -1; }

TlsContext makeTls(const TlsFiles& files) {
  TlsContext context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  if (!context) throw std::bad_alloc();
  ERR_clear_error();
  SSL_CTX_set_min_proto_version(context.get(), TLS1_2_VERSION);
  SSL_CTX_set_default_passwd_cb(context.get(), noPassPhrase);
  if (SSL_CTX_use_certificate_chain_file(context.get(), files.certificate.c_str()) != 1) {
    throw badFile("the certificate", files.certificate);
  }
  if (SSL_CTX_use_PrivateKey_file(context.get(), files.key.c_str(), SSL_FILETYPE_PEM) != 1) {
    throw badFile("the key", files.key);
  }
  if (files.clientCa.empty()) return context;
  if (SSL_CTX_load_verify_file(context.get(), files.clientCa.c_str()) != 1) {
    throw badFile("the authority of client certificates", files.clientCa);
  }
  SSL_CTX_set_verify(context.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
  return context;
}

/// The library's server over connections of our own, which alone can end without an answer.
class Server final : public httplib::Server {
 public:
  explicit Server(TlsContext tls) : tls_(std::move(tls)) {}

 private:
  bool process_and_close_socket(socket_t socket) override {
    constexpr int mostRequests = 1000;
    const auto stopping = [this] { return svr_sock_ == INVALID_SOCKET; };
    Connection connection(socket, tls_.get());
    if (!connection.open()) return false;
    for (int left = mostRequests; left > 0 && connection.awaitRequest(stopping); --left) {
      bool closed = false;
      const bool answered =
          process_request(connection, left == 1, closed, [&](httplib::Request&) { connection.headRead(); });
      if (!connection.finish(answered) || closed) break;
    }
    return true;
  }

  TlsContext tls_;
};

/// Without the library's own choice, which lets two servers share one port unnoticed.
void reuseAddress(socket_t socket) { sockets::reuseAddress(static_cast<sockets::Socket>(socket)); }

std::optional<std::string> readAll(const httplib::ContentReader& reader) {
  std::string body;
  const bool whole = reader([&](const char* bytes, std::size_t size) {
    if (size > largestRequest - body.size()) return false;
    body.append(bytes, size);
    return true;
  });
  if (!whole) return std::nullopt;
  return body;
}

/// Sends `answer` in pieces, as far as its delivery goes.
httplib::ContentProvider piecewise(HttpAnswer answer) {
  return [answer = std::move(answer)](std::size_t offset, std::size_t, httplib::DataSink& sink) {
    constexpr std::size_t piece = std::size_t{64} << 10U;
    if (answer.delivery == HttpAnswer::Delivery::nothing) return false;
    if (answer.delivery == HttpAnswer::Delivery::half) {
      sink.write(answer.body.data(), answer.body.size() / 2);
      return false;
    }
    if (offset < answer.body.size()) return sink.write(answer.body.data() + offset, answer.body.size() - offset);
    const std::string blanks(std::min(piece, answer.body.size() + answer.padding - offset), ' ');
    return sink.write(blanks.data(), blanks.size());
  };
}

void give(HttpAnswer answer, httplib::Response& response) {
  response.status = answer.status;
  if (answer.close) response.set_header("Connection", "close");
  for (const std::string& cookie : answer.cookies) response.set_header("Set-Cookie", cookie + "; Path=/; HttpOnly");
  const std::size_t size = std::max<std::size_t>(1, answer.body.size() + answer.padding);
  if (answer.delivery == HttpAnswer::Delivery::whole && answer.padding == 0) {
    response.set_content(answer.body, answer.contentType);
  } else {
    const std::string type = answer.contentType;
    response.set_content_provider(size, type, piecewise(std::move(answer)));
  }
}

std::string lastReason() {
  switch (sockets::lastListenFailure()) {
    case sockets::ListenFailure::taken:
      return "the port is taken by another program";
    case sockets::ListenFailure::forbidden:
      return "the port may be used by the administrator only";
    default:
      return "not an address of this machine";
  }
}

}  // namespace

class HttpServer::Implementation {
 public:
  Implementation(const std::string& host, int port, TlsContext tls, Post post, Page page)
      : server_(std::move(tls)), post_(std::move(post)), page_(std::move(page)) {
    server_.set_payload_max_length(largestRequest);
    server_.set_socket_options(reuseAddress);
    server_.new_task_queue = [] {
      constexpr std::size_t threads = 8;
      return new httplib::ThreadPool(threads);
    };
    // Not "." alone: a path may hold an encoded line end.
    server_.Post(R"([\s\S]*)", [this](const httplib::Request& request, httplib::Response& response,
                                      const httplib::ContentReader& reader) { onPost(request, response, reader); });
    server_.Get(R"([\s\S]*)", [this](const httplib::Request&, httplib::Response& response) {
      response.set_content(page_(), "text/plain; charset=utf-8");
    });
    listen(host, port);
  }

  ~Implementation() {
    server_.stop();
    thread_.join();
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  int port() const { return port_; }

 private:
  void listen(const std::string& host, int port) {
    sockets::clearFailure();
    port_ = port == 0 ? server_.bind_to_any_port(host) : server_.bind_to_port(host, port) ? port : -1;
    if (port_ < 0) throw StartFailure("cannot listen on " + host + ":" + std::to_string(port) + ": " + lastReason());
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // A stop before the server runs would have no effect.
    while (!server_.is_running()) std::this_thread::yield();
  }

  void onPost(const httplib::Request& request, httplib::Response& response, const httplib::ContentReader& reader) {
    if (request.is_multipart_form_data()) {
      constexpr int unsupported = 415;
      return give({.status = unsupported, .contentType = "text/plain", .body = "XML erwartet\n", .close = true},
                  response);
    }
    give(post_({.path = request.path,
                .cookieHeader = request.get_header_value("Cookie"),
                .readBody = [&reader] { return readAll(reader); }}),
         response);
  }

  Server server_;
  Post post_;
  Page page_;
  int port_ = -1;
  std::thread thread_;
};

HttpServer::HttpServer(const std::string& host, int port, const std::optional<TlsFiles>& tls, Post post, Page page)
    : implementation_(std::make_unique<Implementation>(
          host, port, tls ? makeTls(*tls) : TlsContext(nullptr, SSL_CTX_free), std::move(post), std::move(page))) {}

HttpServer::~HttpServer() = default;

int HttpServer::port() const { return implementation_->port(); }

}  // namespace kartix::simulator
