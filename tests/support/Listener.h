#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace kartix::test {

/// A listening socket on 127.0.0.1 that serves every connection on a thread of its own. Stopping shuts all sockets
/// down, so that no thread is left waiting.
class Listener {
 public:
  Listener();
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  /// `serve` gets a connected socket and its number, counted from 0. It returns when it is done with the socket,
  /// which is closed then.
  void start(std::function<void(int socket, int number)> serve);
  void stop();

  std::string port() const { return port_; }
  int connections() const { return connections_; }

  /// Makes `stop` shut down a socket that the server itself opened, until `forget`.
  void remember(int socket);
  void forget(int socket);

 private:
  void acceptAll();
  void joinDone();

  int socket_;
  std::function<void(int, int)> serve_;
  std::string port_;
  std::atomic<int> connections_ = 0;
  std::mutex mutex_;
  bool stopped_ = false;
  bool ended_ = false;
  std::vector<int> open_;
  std::vector<std::thread> workers_;
  std::vector<std::thread::id> done_;
  std::thread accepting_;
};

/// A socket connected to `port` of 127.0.0.1, or -1.
int connectTo(const std::string& port);

}  // namespace kartix::test
