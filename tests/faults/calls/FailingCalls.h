#pragma once

#include <array>
#include <atomic>

/// Lets calls of this process into the system fail. Whoever links this folder has the system's functions replaced by
/// ones that count, and fail when it is their turn.
namespace kartix::test::calls {

/// What is counted. `write`, `read` and `flush` are those of files and of the standard streams; sockets are sent to
/// and received from, whichever function does it. Allocations are counted by whoever brings an allocator.
enum class Kind { allocation, write, flush, rename, read, connect, send, receive, none };
inline constexpr std::array<const char*, 8> kindNames = {"allocation", "write",   "flush", "rename",
                                                         "read",       "connect", "send",  "receive"};

/// Numbers of the same size, for readers in other languages.
struct State {
  std::atomic<long> counting;
  std::atomic<long> failing;  ///< the kind that fails
  std::atomic<long> first;    ///< number of the first call that does, from 1
  std::atomic<long> span;     ///< how many do
  std::atomic<long> error;    ///< what they say
  std::array<std::atomic<long>, kindNames.size()> counts;
  std::atomic<long> failed;
  std::atomic<long> passedOver;  ///< whose turn it was, and who were let be
};

/// Of this process. One that is shared with another process may take its place before anything is counted.
State& state() noexcept;
void share(State& other) noexcept;
/// A file of which no call fails and none is counted.
void spare(const char* path) noexcept;

/// From now on calls are counted, and `span` of the `kind` fail with `error` from number `first` on.
void failFrom(Kind kind, long first, long span, int error) noexcept;

/// Nothing is counted or fails any more. How many calls have failed.
long failNoMore() noexcept;

/// Counts a call, and tells whether it is to fail; then with `errno` set.
bool fails(Kind kind) noexcept;

}  // namespace kartix::test::calls
