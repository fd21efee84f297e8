#include "simulator/Connection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "simulator/HttpServer.h"

namespace kartix::simulator {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t headLimit = std::size_t{64} << 10U;
/// Longest pause between two bytes.
constexpr time_t pauseSeconds = 5;
constexpr auto requestTime = 60s;
/// How long a connection may wait for its next request.
constexpr auto idleTime = 5s;
constexpr auto slice = 50ms;

void limitPauses(socket_t socket) {
  const timeval pause{pauseSeconds, 0};
  ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause);
  ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &pause, sizeof pause);
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

bool ready(socket_t socket, short events, std::chrono::milliseconds time) {
  pollfd wait{socket, events, 0};
  return ::poll(&wait, 1, static_cast<int>(time.count())) > 0;
}

}  // namespace

Connection::Connection(socket_t socket, SSL_CTX* tls)
    : socket_(socket),
      tls_(tls ? SSL_new(tls) : nullptr, SSL_free),
      limit_(headLimit),
      deadline_(std::chrono::steady_clock::now() + requestTime) {
  if (tls && !tls_) throw std::bad_alloc();
  limitPauses(socket_);
}

Connection::~Connection() {
  if (tls_) SSL_shutdown(tls_.get());
  ::shutdown(socket_, SHUT_RDWR);
  ::close(socket_);
}

bool Connection::open() { return !tls_ || (SSL_set_fd(tls_.get(), socket_) == 1 && SSL_accept(tls_.get()) == 1); }

bool Connection::awaitRequest(const std::function<bool()>& stopping) {
  const auto until = std::chrono::steady_clock::now() + idleTime;
  bool waiting = begin_ < end_ || (tls_ && SSL_pending(tls_.get()) > 0);
  while (!waiting && !stopping() && std::chrono::steady_clock::now() < until) waiting = ready(socket_, POLLIN, slice);
  received_ = 0;
  limit_ = headLimit;
  deadline_ = std::chrono::steady_clock::now() + requestTime;
  return waiting && !stopping();
}

void Connection::headRead() { limit_ = headLimit + largestRequest; }

bool Connection::finish(bool answered) {
  const bool whole = answered && flush();
  held_.clear();
  bodyBegun_ = false;
  return whole && !closing_;
}

bool Connection::inTime() const { return std::chrono::steady_clock::now() < deadline_; }

bool Connection::is_writable() const {
  return ready(socket_, POLLOUT, std::chrono::seconds(pauseSeconds)) && inTime();
}

bool Connection::fill() {
  if (received_ >= limit_ || !inTime()) return false;
  const int size = static_cast<int>(buffer_.size());
  ssize_t count = 0;
  do {
    count = tls_ ? SSL_read(tls_.get(), buffer_.data(), size) : ::recv(socket_, buffer_.data(), buffer_.size(), 0);
  } while (!tls_ && count < 0 && errno == EINTR);
  if (count <= 0) return false;
  begin_ = 0;
  end_ = static_cast<std::size_t>(count);
  received_ += end_;
  return true;
}

ssize_t Connection::read(char* bytes, size_t size) {
  if (!flush()) return -1;
  if (begin_ == end_ && !fill()) return -1;
  const std::size_t count = std::min(size, end_ - begin_);
  std::copy_n(buffer_.data() + begin_, count, bytes);
  begin_ += count;
  return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, size_t size) {
  if (held_.empty() && !bodyBegun_) {
    held_.assign(bytes, size);
    closing_ = held_.find("\r\nConnection: close\r\n") != std::string::npos;
    return static_cast<ssize_t>(size);
  }
  bodyBegun_ = true;
  return flush() && send(bytes, size) ? static_cast<ssize_t>(size) : -1;
}

bool Connection::flush() {
  if (held_.empty()) return true;
  const bool sent = send(held_.data(), held_.size());
  held_.clear();
  return sent;
}

bool Connection::send(const char* bytes, std::size_t size) {
  while (size > 0) {
    if (!inTime()) return false;
    const int part = static_cast<int>(std::min(size, buffer_.size()));
    const ssize_t count = tls_ ? SSL_write(tls_.get(), bytes, part) : ::send(socket_, bytes, size, MSG_NOSIGNAL);
    if (!tls_ && count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  ip.clear();
  port = 0;
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  ip.clear();
  port = 0;
}

}  // namespace kartix::simulator
