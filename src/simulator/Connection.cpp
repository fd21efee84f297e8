#include "simulator/Connection.h"

#include <algorithm>
#include <new>

#include "simulator/HttpServer.h"
#include "simulator/System.h"

namespace kartix::simulator {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t headLimit = std::size_t{64} << 10U;
/// Longest pause between two bytes.
constexpr auto longestPause = 5s;
constexpr auto requestTime = 60s;
/// How long a connection may wait for its next request.
constexpr auto idleTime = 5s;
constexpr auto slice = 50ms;

}  // namespace

Connection::Connection(socket_t socket, SSL_CTX* tls)
    : socket_(socket),
      tls_(tls ? SSL_new(tls) : nullptr, SSL_free),
      limit_(headLimit),
      deadline_(std::chrono::steady_clock::now() + requestTime) {
  if (tls && !tls_) throw std::bad_alloc();
  sockets::limitPauses(handle(), longestPause);
}

Connection::~Connection() {
  if (tls_) SSL_shutdown(tls_.get());
  sockets::end(handle());
}

bool Connection::open() {
  return !tls_ || (SSL_set_fd(tls_.get(), static_cast<int>(handle())) == 1 && SSL_accept(tls_.get()) == 1);
}

bool Connection::awaitRequest(const std::function<bool()>& stopping) {
  const auto until = std::chrono::steady_clock::now() + idleTime;
  bool waiting = begin_ < end_ || (tls_ && SSL_pending(tls_.get()) > 0);
  while (!waiting && !stopping() && std::chrono::steady_clock::now() < until) {
    waiting = sockets::ready(handle(), sockets::For::reading, slice);
  }
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
  return sockets::ready(handle(), sockets::For::writing, longestPause) && inTime();
}

bool Connection::fill() {
  if (received_ >= limit_ || !inTime()) return false;
  const int size = static_cast<int>(buffer_.size());
  const std::ptrdiff_t count =
      tls_ ? SSL_read(tls_.get(), buffer_.data(), size) : sockets::receive(handle(), buffer_.data(), buffer_.size());
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
    const std::ptrdiff_t count = tls_ ? SSL_write(tls_.get(), bytes, part) : sockets::send(handle(), bytes, size);
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
