#include "adapters/curl/HandlePool.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

#include "adapters/curl/Watch.h"

namespace kartix::adapters {
namespace {

constexpr std::size_t mostIdle = 4;

/// A connection that is still open so long after an answer is one that the server keeps.
constexpr std::chrono::milliseconds shownAfter{250};

}  // namespace

Handle::Handle(Route route) : route_(std::move(route)), easy_(curl_easy_init()) {
  if (!easy_) throw std::bad_alloc();
}

bool Handle::connected() const {
  curl_socket_t socket = CURL_SOCKET_BAD;
  return curl_easy_getinfo(easy_, CURLINFO_ACTIVESOCKET, &socket) == CURLE_OK && socket != CURL_SOCKET_BAD;
}

bool Handle::connectionEnds(std::chrono::milliseconds wait) const {
  curl_socket_t socket = CURL_SOCKET_BAD;
  curl_easy_getinfo(easy_, CURLINFO_ACTIVESOCKET, &socket);
  return speaks(socket, wait);
}

HandlePool::HandlePool() {
  // Room for all from the start: an answer must not be lost because its handle finds none.
  idle_.reserve(mostIdle);
}

std::unique_ptr<Handle> HandlePool::takeIdle(const Route& route) {
  const std::scoped_lock lock(mutex_);
  const auto found =
      std::find_if(idle_.rbegin(), idle_.rend(), [&](const auto& handle) { return handle->route() == route; });
  if (found == idle_.rend()) return nullptr;
  auto handle = std::move(*found);
  idle_.erase(std::next(found).base());
  return handle;
}

HandlePool::Habit HandlePool::habitOf(const Handle& handle) {
  const std::scoped_lock lock(mutex_);
  return habits_[handle.route().server];
}

void HandlePool::learn(const Handle& handle, Habit habit) {
  const std::scoped_lock lock(mutex_);
  Habit& known = habits_[handle.route().server];
  if (known != Habit::ends) known = habit;
}

bool HandlePool::isKept(const Handle& handle, bool mayWait) {
  using std::chrono::milliseconds;
  const auto idle = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - handle.answeredAt);
  // Beyond the limit an end is to be expected and tells nothing.
  if (!handle.connected() || idle >= handle.promise.limit) return false;
  const bool trusted = handle.promise.given || habitOf(handle) == Habit::keeps;
  const milliseconds watch = trusted || !mayWait ? milliseconds{0} : std::max(shownAfter - idle, milliseconds{0});
  // Looked at here, because under TLS the library takes a server's farewell for a sign of life.
  if (handle.connectionEnds(watch)) {
    learn(handle, Habit::ends);
    return false;
  }
  if (idle + watch >= shownAfter) learn(handle, Habit::keeps);
  return true;
}

std::unique_ptr<Handle> HandlePool::take(const Route& route, bool fresh) {
  auto handle = takeIdle(route);
  if (!handle) handle = std::make_unique<Handle>(route);
  const bool kept = isKept(*handle, !fresh);
  handle->permission.keep = habitOf(*handle) != Habit::ends;
  handle->permission.reuse = kept && !fresh && handle->permission.keep;
  return handle;
}

void HandlePool::giveBack(std::unique_ptr<Handle> handle, const KeepPromise& promise) noexcept {
  curl_easy_reset(handle->easy());  // keeps connections, TLS sessions and looked-up names
  handle->tlsEvents = {};
  handle->answeredAt = std::chrono::steady_clock::now();
  handle->promise = promise;
  std::unique_ptr<Handle> surplus;  // goes after the lock: closing connections takes time
  const std::scoped_lock lock(mutex_);
  if (idle_.size() == mostIdle) {
    surplus = std::move(idle_.front());
    idle_.erase(idle_.begin());
  }
  idle_.push_back(std::move(handle));
}

}  // namespace kartix::adapters
