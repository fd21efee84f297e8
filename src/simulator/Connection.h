#pragma once

#include <httplib.h>
#include <openssl/ssl.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kartix::simulator {

/// One client's connection, in the clear or with TLS. Reading is bounded in size and time, so that no client can hold
/// a thread or memory for long. What is written waits until the body of the answer begins, the answer ends or a read
/// follows: an answer whose body fails before it begins leaves nothing behind on the wire.
class Connection final : public httplib::Stream {
 public:
  /// Takes `socket` over. `tls` is null for a connection in the clear.
  Connection(socket_t socket, SSL_CTX* tls);
  ~Connection() override;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// The handshake of TLS. False when the client did not come through it.
  bool open();

  /// Waits for the first byte of a request; not for long, and not when `stopping` tells so.
  bool awaitRequest(const std::function<bool()>& stopping);

  /// The head of the request has been read: a body may be larger.
  void headRead();

  /// Ends one exchange; `answered` tells that the answer was written whole. True when another request may follow.
  bool finish(bool answered);

  bool is_readable() const override { return true; }
  bool is_writable() const override;
  ssize_t read(char* bytes, size_t size) override;
  ssize_t write(const char* bytes, size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  bool fill();
  bool flush();
  bool send(const char* bytes, std::size_t size);
  bool inTime() const;
  std::intptr_t handle() const { return static_cast<std::intptr_t>(socket_); }

  socket_t socket_;
  std::unique_ptr<SSL, decltype(&SSL_free)> tls_;

  std::array<char, 16384> buffer_{};
  std::size_t begin_ = 0;
  std::size_t end_ = 0;

  std::size_t received_ = 0;  ///< bytes of the present request
  std::size_t limit_;         ///< most of them
  std::chrono::steady_clock::time_point deadline_;

  std::string held_;
  bool bodyBegun_ = false;
  bool closing_ = false;  ///< the answer says that the connection ends
};

}  // namespace kartix::simulator
