#include "simulator/Connection.h"

#include <algorithm>
#include <boost/asio/error.hpp>
#include <new>
#include <utility>

namespace kartix::simulator {
namespace {

using namespace std::chrono_literals;

/// Longest pause between two bytes.
constexpr auto longestPause = 5s;
constexpr auto requestTime = 60s;
constexpr auto slice = 50ms;

constexpr std::size_t largestPiece = 16384;

}  // namespace

Connection::Connection(Socket socket, SSL_CTX* tls)
    : socket_(std::move(socket)),
      tls_(tls ? SSL_new(tls) : nullptr, SSL_free),
      deadline_(std::chrono::steady_clock::now() + requestTime) {
  if (tls && !tls_) throw std::bad_alloc();
  sockets::limitPauses(handle(), longestPause);
}

Connection::~Connection() {
  if (tls_) SSL_shutdown(tls_.get());
  boost::system::error_code ignored;
  socket_.shutdown(Socket::shutdown_both, ignored);
}

bool Connection::open() {
  return !tls_ || (SSL_set_fd(tls_.get(), static_cast<int>(handle())) == 1 && SSL_accept(tls_.get()) == 1);
}

bool Connection::awaitRequest(bool begun, const std::function<bool()>& stopping) {
  const auto until = std::chrono::steady_clock::now() + longestIdle;
  bool waiting = begun || (tls_ && SSL_pending(tls_.get()) > 0);
  while (!waiting && !stopping() && std::chrono::steady_clock::now() < until) {
    waiting = sockets::readable(handle(), slice);
  }
  deadline_ = std::chrono::steady_clock::now() + requestTime;
  return waiting && !stopping();
}

bool Connection::inTime() const { return std::chrono::steady_clock::now() < deadline_; }

std::size_t Connection::read(char* bytes, std::size_t size, boost::system::error_code& error) {
  const std::size_t most = std::min(size, largestPiece);
  const std::ptrdiff_t count = !inTime() ? -1
                               : tls_    ? SSL_read(tls_.get(), bytes, static_cast<int>(most))
                                         : sockets::receive(handle(), bytes, most);
  if (count > 0) return static_cast<std::size_t>(count);
  error = boost::asio::error::eof;
  return 0;
}

std::size_t Connection::write(const char* bytes, std::size_t size, boost::system::error_code& error) {
  const std::size_t most = std::min(size, largestPiece);
  const std::ptrdiff_t count = !inTime() ? -1
                               : tls_    ? SSL_write(tls_.get(), bytes, static_cast<int>(most))
                                         : sockets::send(handle(), bytes, most);
  if (count > 0) return static_cast<std::size_t>(count);
  error = boost::asio::error::broken_pipe;
  return 0;
}

}  // namespace kartix::simulator
