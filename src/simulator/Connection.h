#pragma once

#include <openssl/ssl.h>

#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/buffers_range.hpp>
#include <boost/system/error_code.hpp>
#include <boost/system/system_error.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

#include "simulator/System.h"

namespace kartix::simulator {

/// One client's connection, in the clear or with TLS, as a stream for Beast. Every pause and every request have a
/// limit, so that no client can hold a thread for long.
class Connection {
 public:
  using Socket = boost::asio::ip::tcp::socket;
  /// How long a connection may wait for its next request.
  static constexpr std::chrono::seconds longestIdle{5};

  /// `tls` is null for a connection in the clear.
  Connection(Socket socket, SSL_CTX* tls);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// The handshake of TLS. False when the client did not come through it.
  bool open();

  /// Waits for the first byte of a request, from which its time runs; `begun` when a part of it has been read. Not
  /// for long, and not when `stopping` tells so: False then.
  bool awaitRequest(bool begun, const std::function<bool()>& stopping);

  template <class Buffers>
  std::size_t read_some(const Buffers& buffers, boost::system::error_code& error) {
    error = {};
    for (const boost::asio::mutable_buffer buffer : boost::beast::buffers_range_ref(buffers)) {
      if (buffer.size() > 0) return read(static_cast<char*>(buffer.data()), buffer.size(), error);
    }
    return 0;
  }

  template <class Buffers>
  std::size_t write_some(const Buffers& buffers, boost::system::error_code& error) {
    error = {};
    for (const boost::asio::const_buffer buffer : boost::beast::buffers_range_ref(buffers)) {
      if (buffer.size() > 0) return write(static_cast<const char*>(buffer.data()), buffer.size(), error);
    }
    return 0;
  }

  template <class Buffers>
  std::size_t read_some(const Buffers& buffers) {
    return orThrow([&](auto& error) { return read_some(buffers, error); });
  }

  template <class Buffers>
  std::size_t write_some(const Buffers& buffers) {
    return orThrow([&](auto& error) { return write_some(buffers, error); });
  }

 private:
  template <class Call>
  static std::size_t orThrow(Call call) {
    boost::system::error_code error;
    const std::size_t count = call(error);
    if (error) throw boost::system::system_error(error);
    return count;
  }

  std::size_t read(char* bytes, std::size_t size, boost::system::error_code& error);
  std::size_t write(const char* bytes, std::size_t size, boost::system::error_code& error);
  bool inTime() const;
  sockets::Socket handle() { return static_cast<sockets::Socket>(socket_.native_handle()); }

  Socket socket_;
  std::unique_ptr<SSL, decltype(&SSL_free)> tls_;
  std::chrono::steady_clock::time_point deadline_;
};

}  // namespace kartix::simulator
