#include "support/LoopbackServer.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <thread>
#include <utility>

#include "support/Sockets.h"

namespace kartix::test {
namespace {

constexpr std::string_view endOfHead = "\r\n\r\n";

/// How much of `bytes` one call of any system takes.
int piece(std::string_view bytes) { return static_cast<int>(std::min(bytes.size(), std::size_t{1} << 20U)); }

/// One connection, plain or TLS.
class Wire {
 public:
  Wire(int socket, SSL_CTX* context) : socket_(socket), tls_(nullptr, SSL_free) {
    if (!context) return;
    tls_.reset(SSL_new(context));
    SSL_set_fd(tls_.get(), socket);
    open_ = SSL_accept(tls_.get()) == 1;
    if (!open_) linger();
  }

  bool open() const { return open_; }

  /// Some bytes; none when the peer is gone.
  std::string read() {
    std::array<char, 16384> buffer{};
    const int size = tls_ ? SSL_read(tls_.get(), buffer.data(), static_cast<int>(buffer.size()))
                          : static_cast<int>(::recv(socket_, buffer.data(), buffer.size(), 0));
    return size > 0 ? std::string(buffer.data(), static_cast<std::size_t>(size)) : std::string();
  }

  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const int size = tls_ ? SSL_write(tls_.get(), bytes.data(), piece(bytes))
                            : static_cast<int>(::send(socket_, bytes.data(), piece(bytes), MSG_NOSIGNAL));
      if (size <= 0) return;
      bytes.remove_prefix(static_cast<std::size_t>(size));
    }
  }

  /// Says goodbye as TLS wants it; an answer that only stops is one that broke off.
  void close() {
    if (tls_) SSL_shutdown(tls_.get());
  }

 private:
  /// Waits for the peer to go: closing with bytes unread would take the alert back that says what was wrong.
  void linger() {
    ::shutdown(socket_, SHUT_WR);
    std::array<char, 1024> unread{};
    while (::recv(socket_, unread.data(), unread.size(), 0) > 0) {
    }
  }

  int socket_;
  std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
  bool open_ = true;
};

std::size_t bodySize(const std::string& head) {
  constexpr std::string_view name = "\r\nContent-Length: ";
  const auto at = head.find(name);
  return at == std::string::npos ? 0 : std::stoul(head.substr(at + name.size()));
}

/// The next request; nothing when the peer is gone. Left-over bytes stay in `pending`.
std::optional<RecordedRequest> readRequest(Wire& wire, std::string& pending,
                                           const LoopbackServer::Impatience& impatience) {
  RecordedRequest request;
  const auto readUntil = [&](const auto& enough) {
    while (!enough()) {
      const std::string bytes = wire.read();
      if (bytes.empty()) return false;
      pending += bytes;
    }
    return true;
  };
  if (!readUntil([&] { return pending.find(endOfHead) != std::string::npos; })) return std::nullopt;
  const std::size_t headSize = pending.find(endOfHead) + endOfHead.size();
  request.head = pending.substr(0, headSize);
  pending.erase(0, headSize);
  if (impatience && impatience(request)) return request;
  const std::size_t size = bodySize(request.head);
  if (!readUntil([&] { return pending.size() >= size; })) return std::nullopt;
  request.body = pending.substr(0, size);
  pending.erase(0, size);
  return request;
}

SSL_CTX* makeContext(const TlsWishes& wishes) {
  SSL_CTX* const context = SSL_CTX_new(TLS_server_method());
  if (SSL_CTX_use_certificate_file(context, wishes.files.certificate.c_str(), SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_use_PrivateKey_file(context, wishes.files.key.c_str(), SSL_FILETYPE_PEM) != 1) {
    SSL_CTX_free(context);
    throw std::runtime_error("server certificate is not usable");
  }
  constexpr std::array<unsigned char, 6> sessions = {'k', 'a', 'r', 't', 'i', 'x'};
  SSL_CTX_set_session_id_context(context, sessions.data(), sessions.size());
  if (wishes.onlyTls12) SSL_CTX_set_max_proto_version(context, TLS1_2_VERSION);
  if (!wishes.clientCa.empty()) {
    SSL_CTX_load_verify_file(context, wishes.clientCa.c_str());
    SSL_CTX_set_verify(context, SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
  }
  return context;
}

LoopbackServer::Script inTurn(std::vector<Reply> replies) {
  return [replies = std::move(replies), next = std::size_t{0}](const RecordedRequest&) mutable {
    Reply reply = replies.at(next);
    if (next + 1 < replies.size()) ++next;
    return reply;
  };
}

/// Carries bytes from one socket to the other until there are no more.
void carry(int from, int to) {
  std::array<char, 16384> buffer{};
  for (auto size = ::recv(from, buffer.data(), buffer.size(), 0); size > 0;
       size = ::recv(from, buffer.data(), buffer.size(), 0)) {
    if (::send(to, buffer.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL) != size) break;
  }
  ::shutdown(to, SHUT_WR);
}

/// Carries bytes both ways until both sides are done.
void relay(int one, int other) {
  std::thread back(carry, other, one);
  carry(one, other);
  back.join();
}

}  // namespace

std::string answer(const std::string& body, const std::string& status, const std::string& headers) {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + headers + "\r\n" +
         body;
}

LoopbackServer::LoopbackServer(Script script, const std::optional<TlsWishes>& tls, Impatience impatience)
    : script_(std::move(script)),
      impatience_(std::move(impatience)),
      tls_(tls ? makeContext(*tls) : nullptr, SSL_CTX_free) {
  listener_.start([this](int socket, int number) { serve(socket, number); });
}

LoopbackServer::LoopbackServer(std::vector<Reply> replies, const std::optional<TlsWishes>& tls)
    : LoopbackServer(inTurn(std::move(replies)), tls) {}

std::vector<RecordedRequest> LoopbackServer::requests() const {
  const std::scoped_lock lock(mutex_);
  return requests_;
}

void LoopbackServer::forgetRequests() {
  const std::scoped_lock lock(mutex_);
  requests_.clear();
}

Reply LoopbackServer::replyTo(const RecordedRequest& request) {
  const std::scoped_lock lock(mutex_);
  requests_.push_back(request);
  return script_(request);
}

void LoopbackServer::serve(int socket, int number) {
  Wire wire(socket, tls_.get());
  std::string pending;
  while (wire.open()) {
    std::optional<RecordedRequest> request = readRequest(wire, pending, impatience_);
    if (!request) return;
    request->connection = number;
    const Reply reply = replyTo(*request);
    wire.write(reply.bytes);
    if (reply.after.count() > 0) std::this_thread::sleep_for(reply.after);
    switch (reply.then) {
      case Reply::Then::keepOpen:
        break;
      case Reply::Then::hang:
        while (!wire.read().empty()) {
        }
        return;
      case Reply::Then::reset: {
        const linger atOnce{1, 0};
        ::setsockopt(socket, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof atOnce);
        return;
      }
      case Reply::Then::close:
        wire.close();
        return;
      case Reply::Then::drop:
        return;
    }
  }
}

ConnectProxy::ConnectProxy(std::string refusal) : refusal_(std::move(refusal)) {
  listener_.start([this](int socket, int) { serve(socket); });
}

std::vector<std::string> ConnectProxy::requests() const {
  const std::scoped_lock lock(mutex_);
  return requests_;
}

void ConnectProxy::serve(int socket) {
  Wire wire(socket, nullptr);
  std::string pending;
  const std::optional<RecordedRequest> request = readRequest(wire, pending, nullptr);
  if (!request) return;
  {
    const std::scoped_lock lock(mutex_);
    requests_.push_back(request->head);
  }
  const std::string& head = request->head;
  if (!refusal_.empty() || !head.starts_with("CONNECT ")) {
    return wire.write(answer("", refusal_.empty() ? "405 Method Not Allowed" : refusal_));
  }
  const std::string target = head.substr(0, head.find(" HTTP/"));
  const int server = connectTo(target.substr(target.rfind(':') + 1));
  if (server < 0) return wire.write(answer("", "502 Bad Gateway"));
  wire.write("HTTP/1.1 200 Connection established\r\n\r\n");
  listener_.remember(server);
  relay(socket, server);
  listener_.forget(server);
  closeSocket(server);
}

}  // namespace kartix::test
