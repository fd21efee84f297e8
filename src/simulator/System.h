#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

#include "platform/Clock.h"

/// What the simulator asks of its system, each of which has a source of its own.
namespace kartix::simulator {

platform::LocalTime localTime();

namespace sockets {

/// A socket of the system.
using Socket = std::intptr_t;

/// Waits until `socket` has something to read or to accept, no longer than `time`. False when it has not.
bool readable(Socket socket, std::chrono::milliseconds time);

/// Longest pause between two bytes; small pieces go out at once.
void limitPauses(Socket socket, std::chrono::seconds longest);

/// A peer that is gone is no signal to this thread, whoever writes to it.
void withoutSignals();

/// Number of bytes, 0 at the end, negative when it failed or paused too long.
std::ptrdiff_t receive(Socket socket, char* bytes, std::size_t size);
std::ptrdiff_t send(Socket socket, const char* bytes, std::size_t size);

/// Lets a server take an address again that a server before it has just left, and no other's.
void reuseAddress(Socket socket);

}  // namespace sockets
}  // namespace kartix::simulator
