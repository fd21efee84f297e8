#include <winsock2.h>

#include <algorithm>
#include <ctime>
#include <limits>

#include "simulator/System.h"

namespace kartix::simulator {

platform::LocalTime localTime() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_s(&local, &seconds);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

namespace sockets {
namespace {

SOCKET numberOf(Socket socket) { return static_cast<SOCKET>(socket); }

template <class T>
void set(Socket socket, int level, int option, T value) {
  ::setsockopt(numberOf(socket), level, option, reinterpret_cast<const char*>(&value), sizeof value);
}

int piece(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max())); }

}  // namespace

bool readable(Socket socket, std::chrono::milliseconds time) {
  WSAPOLLFD wait{numberOf(socket), POLLRDNORM, 0};
  return ::WSAPoll(&wait, 1, static_cast<int>(time.count())) > 0;
}

void limitPauses(Socket socket, std::chrono::seconds longest) {
  const auto milliseconds = static_cast<DWORD>(std::chrono::milliseconds(longest).count());
  set(socket, SOL_SOCKET, SO_RCVTIMEO, milliseconds);
  set(socket, SOL_SOCKET, SO_SNDTIMEO, milliseconds);
  set(socket, IPPROTO_TCP, TCP_NODELAY, DWORD{1});
}

// Here it is none.
void withoutSignals() {}

std::ptrdiff_t receive(Socket socket, char* bytes, std::size_t size) {
  return ::recv(numberOf(socket), bytes, piece(size), 0);
}

std::ptrdiff_t send(Socket socket, const char* bytes, std::size_t size) {
  return ::send(numberOf(socket), bytes, piece(size), 0);
}

// Here an address can be taken again without more words; the option of that name would share it between servers.
void reuseAddress(Socket socket) { set(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, DWORD{1}); }

}  // namespace sockets
}  // namespace kartix::simulator
