#include "support/Listener.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "support/Sockets.h"

namespace kartix::test {
namespace {

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int newSocket() {
  startSockets();
  return static_cast<int>(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

}  // namespace

Listener::Listener() : socket_(newSocket()) {
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  constexpr int backlog = 16;
  if (::bind(socket_, generic, size) != 0 || ::listen(socket_, backlog) != 0 ||
      ::getsockname(socket_, generic, &size) != 0) {
    closeSocket(socket_);
    throw std::runtime_error("no listening socket");
  }
  port_ = std::to_string(ntohs(address.sin_port));
}

Listener::~Listener() {
  stop();
  forgetListening(socket_);
}

void Listener::start(std::function<void(int, int)> serve) {
  serve_ = std::move(serve);
  accepting_ = std::thread([this] {
    blockPipeSignal();  // the workers inherit it
    acceptAll();
  });
}

void Listener::acceptAll() {
  while (true) {
    const int socket = acceptSocket(socket_);
    if (socket < 0) return;
    const std::scoped_lock lock(mutex_);
    if (stopped_) {
      closeSocket(socket);
      return;
    }
    joinDone();
    open_.push_back(socket);
    workers_.emplace_back([this, socket, number = connections_++] {
      serve_(socket, number);
      forget(socket);
      closeSocket(socket);
      const std::scoped_lock done(mutex_);
      done_.push_back(std::this_thread::get_id());
    });
  }
}

/// A thread that nobody has waited for keeps its stack.
void Listener::joinDone() {
  for (const std::thread::id id : std::exchange(done_, {})) {
    const auto worker =
        std::find_if(workers_.begin(), workers_.end(), [&](const std::thread& one) { return one.get_id() == id; });
    worker->join();
    workers_.erase(worker);
  }
}

void Listener::stop() {
  {
    const std::scoped_lock lock(mutex_);
    stopped_ = true;
    for (const int socket : open_) endConnection(socket);
  }
  if (!ended_) endListening(socket_);
  ended_ = true;
  if (accepting_.joinable()) accepting_.join();
  for (std::thread& worker : workers_) worker.join();
  workers_.clear();
}

void Listener::remember(int socket) {
  const std::scoped_lock lock(mutex_);
  open_.push_back(socket);
  if (stopped_) endConnection(socket);
}

void Listener::forget(int socket) {
  const std::scoped_lock lock(mutex_);
  std::erase(open_, socket);
}

int connectTo(const std::string& port) {
  const int socket = newSocket();
  const sockaddr_in address = loopback(static_cast<std::uint16_t>(std::stoi(port)));
  if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return socket;
  closeSocket(socket);
  return -1;
}

}  // namespace kartix::test
