#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>

#include "simulator/System.h"

namespace kartix::simulator {

platform::LocalTime localTime() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_r(&seconds, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

namespace sockets {
namespace {

int numberOf(Socket socket) { return static_cast<int>(socket); }

void set(Socket socket, int level, int option, int value) {
  ::setsockopt(numberOf(socket), level, option, &value, sizeof value);
}

/// Calls again what a signal has interrupted.
template <class Call>
std::ptrdiff_t uninterrupted(Call call) {
  std::ptrdiff_t count = 0;
  do {
    count = call();
  } while (count < 0 && errno == EINTR);
  return count;
}

}  // namespace

bool readable(Socket socket, std::chrono::milliseconds time) {
  pollfd wait{numberOf(socket), POLLIN, 0};
  return ::poll(&wait, 1, static_cast<int>(time.count())) > 0;
}

void limitPauses(Socket socket, std::chrono::seconds longest) {
  const timeval pause{static_cast<time_t>(longest.count()), 0};
  ::setsockopt(numberOf(socket), SOL_SOCKET, SO_RCVTIMEO, &pause, sizeof pause);
  ::setsockopt(numberOf(socket), SOL_SOCKET, SO_SNDTIMEO, &pause, sizeof pause);
  set(socket, IPPROTO_TCP, TCP_NODELAY, 1);
}

void withoutSignals() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

std::ptrdiff_t receive(Socket socket, char* bytes, std::size_t size) {
  return uninterrupted([&] { return ::recv(numberOf(socket), bytes, size, 0); });
}

std::ptrdiff_t send(Socket socket, const char* bytes, std::size_t size) {
  return uninterrupted([&] { return ::send(numberOf(socket), bytes, size, 0); });
}

void reuseAddress(Socket socket) { set(socket, SOL_SOCKET, SO_REUSEADDR, 1); }

}  // namespace sockets
}  // namespace kartix::simulator
