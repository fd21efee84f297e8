#pragma once

// Sockets under one set of names on every system.

#ifdef _WIN32

#include <winsock2.h>
#include <ws2tcpip.h>
#include <windows.h>

inline constexpr int MSG_NOSIGNAL = 0;
inline constexpr int SOCK_CLOEXEC = 0;
inline constexpr int SHUT_WR = SD_SEND;

namespace kartix::test {

inline void startSockets() {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
}
inline void closeSocket(int socket) { ::closesocket(static_cast<SOCKET>(socket)); }
inline int acceptSocket(int socket) {
  return static_cast<int>(::accept(static_cast<SOCKET>(socket), nullptr, nullptr));
}
/// Wakes whoever waits for connections.
inline void endListening(int socket) { closeSocket(socket); }
/// Ends both directions, and wakes whoever reads.
inline void endConnection(int socket) {
  ::shutdown(static_cast<SOCKET>(socket), SD_BOTH);
  ::CancelIoEx(reinterpret_cast<HANDLE>(static_cast<SOCKET>(socket)), nullptr);
}
inline void forgetListening(int) {}
inline void blockPipeSignal() {}

}  // namespace kartix::test

#else

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

namespace kartix::test {

inline void startSockets() {}
inline void closeSocket(int socket) { ::close(socket); }
inline int acceptSocket(int socket) { return ::accept4(socket, nullptr, nullptr, SOCK_CLOEXEC); }
/// Wakes whoever waits for connections.
inline void endListening(int socket) { ::shutdown(socket, SHUT_RDWR); }
/// Ends both directions, and wakes whoever reads.
inline void endConnection(int socket) { ::shutdown(socket, SHUT_RDWR); }
inline void forgetListening(int socket) { closeSocket(socket); }

/// A peer that is gone must not end the test program; the client's own threads keep their handling.
inline void blockPipeSignal() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

}  // namespace kartix::test

#endif
