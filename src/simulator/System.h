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

enum class For { reading, writing };
/// Waits until `socket` is ready, no longer than `time`. False when it is not.
bool ready(Socket socket, For use, std::chrono::milliseconds time);

/// Longest pause between two bytes; small pieces go out at once.
void limitPauses(Socket socket, std::chrono::seconds longest);

/// Number of bytes, 0 at the end, negative when it failed or paused too long. A peer that is gone is no signal.
std::ptrdiff_t receive(Socket socket, char* bytes, std::size_t size);
std::ptrdiff_t send(Socket socket, const char* bytes, std::size_t size);

/// Ends both directions and closes.
void end(Socket socket);

/// Lets a server take an address again that a server before it has just left, and no other's.
void reuseAddress(Socket socket);

/// Why the last attempt to listen has failed.
enum class ListenFailure { taken, forbidden, other };
ListenFailure lastListenFailure();
/// Forgets earlier failures.
void clearFailure();

}  // namespace sockets
}  // namespace kartix::simulator
