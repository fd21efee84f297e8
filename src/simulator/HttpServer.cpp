#include "simulator/HttpServer.h"

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <atomic>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/string.hpp>
#include <boost/beast/http.hpp>
#include <chrono>
#include <cstring>
#include <new>
#include <thread>
#include <utility>

#include "simulator/Connection.h"
#include "simulator/Failures.h"
#include "simulator/System.h"

namespace kartix::simulator {
namespace {

namespace http = boost::beast::http;

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

constexpr std::size_t largestHead = std::size_t{64} << 10U;
constexpr int mostRequests = 1000;

http::response<http::string_body> responseOf(HttpAnswer answer, bool mayKeep, int requestsLeft, unsigned version) {
  http::response<http::string_body> response(http::int_to_status(static_cast<unsigned>(answer.status)), version);
  response.set(http::field::content_type, answer.contentType);
  for (const std::string& cookie : answer.cookies) {
    response.insert(http::field::set_cookie, cookie + "; Path=/; HttpOnly");
  }
  response.keep_alive(mayKeep && !answer.close && requestsLeft > 0);
  if (response.keep_alive()) {
    response.set(http::field::keep_alive, "timeout=" + std::to_string(Connection::longestIdle.count()) +
                                              ", max=" + std::to_string(requestsLeft));
  }
  response.body() = std::move(answer.body);
  response.body().append(answer.padding, ' ');
  response.prepare_payload();
  return response;
}

/// The requests of one connection, one after another.
class Conversation {
 public:
  Conversation(Connection& connection, const HttpServer::Post& post, const HttpServer::Page& page)
      : connection_(connection), post_(post), page_(page) {}

  /// Until the client or the answer ends the connection, or `stopping` tells so.
  void carryOn(const std::function<bool()>& stopping) {
    for (int left = mostRequests; left-- > 0 && connection_.awaitRequest(read_.size() > 0, stopping);) {
      if (!exchange(left)) return;
    }
  }

 private:
  using Parser = http::request_parser<http::string_body>;

  /// True when another request may follow.
  bool exchange(int requestsLeft) {
    Parser parser;
    parser.header_limit(largestHead);
    parser.body_limit(largestRequest);
    boost::system::error_code error;
    http::read_header(connection_, read_, parser, error);
    if (error == http::error::end_of_stream || error == http::error::partial_message ||
        error == boost::asio::error::eof) {
      return false;
    }
    const unsigned version = error ? 11 : parser.get().version();
    HttpAnswer answer = error ? refusal(http::status::bad_request) : answerOf(parser);
    // What was not read of a request would be taken for the next one.
    const bool mayKeep = !error && parser.is_done() && parser.get().keep_alive();
    const auto delivery = answer.delivery;
    return deliver(responseOf(std::move(answer), mayKeep, requestsLeft, version), delivery);
  }

  static HttpAnswer refusal(http::status status) {
    return {.status = static_cast<int>(status), .contentType = "text/plain", .close = true};
  }

  HttpAnswer answerOf(Parser& parser) {
    const http::verb method = parser.get().method();
    if (method == http::verb::get) {
      if (!readBody(parser)) return refusal(http::status::bad_request);
      return {.contentType = "text/plain; charset=utf-8", .body = page_()};
    }
    if (method != http::verb::post) return refusal(http::status::method_not_allowed);
    return post_({.path = std::string(parser.get().target()),
                  .cookieHeader = std::string(parser.get()[http::field::cookie]),
                  .readBody = [&] { return readBody(parser); }});
  }

  std::optional<std::string> readBody(Parser& parser) {
    boost::system::error_code error;
    if (boost::beast::iequals(parser.get()[http::field::expect], "100-continue")) {
      const http::response<http::empty_body> goOn(http::status::continue_, parser.get().version());
      http::write(connection_, goOn, error);
    }
    if (!error) http::read(connection_, read_, parser, error);
    if (error) return std::nullopt;
    return std::move(parser.get().body());
  }

  bool deliver(http::response<http::string_body> response, HttpAnswer::Delivery delivery) {
    if (delivery == HttpAnswer::Delivery::nothing) return false;
    boost::system::error_code error;
    if (delivery == HttpAnswer::Delivery::whole) {
      http::write(connection_, response, error);
      return !error && response.keep_alive();
    }
    http::response_serializer<http::string_body> head(response);
    http::write_header(connection_, head, error);
    const std::string& body = response.body();
    if (!error) boost::asio::write(connection_, boost::asio::buffer(body.data(), body.size() / 2), error);
    return false;
  }

  Connection& connection_;
  const HttpServer::Post& post_;
  const HttpServer::Page& page_;
  boost::beast::flat_buffer read_{2 * largestHead};
};

std::string reasonOf(const boost::system::error_code& error) {
  if (error == boost::asio::error::address_in_use) return "the port is taken by another program";
  if (error == boost::asio::error::access_denied) return "the port may be used by the administrator only";
  return "not an address of this machine";
}

}  // namespace

class HttpServer::Implementation {
 public:
  Implementation(const std::string& host, int port, TlsContext tls, Post post, Page page)
      : tls_(std::move(tls)), post_(std::move(post)), page_(std::move(page)) {
    listen(host, port);
    listener_ = std::thread([this] { accept(); });
  }

  ~Implementation() {
    stopping_ = true;
    listener_.join();
    workers_.join();
  }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  int port() const { return acceptor_.local_endpoint().port(); }

 private:
  using Tcp = boost::asio::ip::tcp;

  void listen(const std::string& host, int port) {
    boost::system::error_code error;
    const auto addresses = Tcp::resolver(context_).resolve(host, std::to_string(port), error);
    if (!error) open(addresses.begin()->endpoint(), error);
    if (error) throw StartFailure("cannot listen on " + host + ":" + std::to_string(port) + ": " + reasonOf(error));
  }

  void open(const Tcp::endpoint& address, boost::system::error_code& error) {
    acceptor_.open(address.protocol(), error);
    if (error) return;
    sockets::reuseAddress(handle());
    acceptor_.bind(address, error);
    if (!error) acceptor_.listen(Tcp::acceptor::max_listen_connections, error);
  }

  void accept() {
    constexpr std::chrono::milliseconds slice(50);
    constexpr std::chrono::milliseconds patience(10);
    while (!stopping_) {
      if (!sockets::readable(handle(), slice)) continue;
      boost::system::error_code error;
      auto socket = std::make_shared<Tcp::socket>(acceptor_.accept(error));
      if (error) {
        // Out of descriptors, say: it passes.
        std::this_thread::sleep_for(patience);
        continue;
      }
      boost::asio::post(workers_, [this, socket] { serve(std::move(*socket)); });
    }
  }

  void serve(Tcp::socket socket) noexcept {
    if (stopping_) return;
    sockets::withoutSignals();
    try {
      Connection connection(std::move(socket), tls_.get());
      if (connection.open()) {
        Conversation(connection, post_, page_).carryOn([this] { return stopping_.load(); });
      }
    } catch (const std::exception&) {
      // Out of memory: this connection ends, the server goes on.
    }
  }

  sockets::Socket handle() { return static_cast<sockets::Socket>(acceptor_.native_handle()); }

  static constexpr std::size_t threads = 8;

  TlsContext tls_;
  Post post_;
  Page page_;
  std::atomic<bool> stopping_ = false;
  boost::asio::io_context context_;
  Tcp::acceptor acceptor_{context_};
  boost::asio::thread_pool workers_{threads};
  std::thread listener_;
};

HttpServer::HttpServer(const std::string& host, int port, const std::optional<TlsFiles>& tls, Post post, Page page)
    : implementation_(std::make_unique<Implementation>(
          host, port, tls ? makeTls(*tls) : TlsContext(nullptr, SSL_CTX_free), std::move(post), std::move(page))) {}

HttpServer::~HttpServer() = default;

int HttpServer::port() const { return implementation_->port(); }

}  // namespace kartix::simulator
