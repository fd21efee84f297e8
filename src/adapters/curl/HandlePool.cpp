#include "adapters/curl/HandlePool.h"

#include <poll.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

namespace kartix::adapters {
namespace {

constexpr std::size_t mostIdle = 4;

}  // namespace

Handle::Handle(std::string identity) : identity_(std::move(identity)), easy_(curl_easy_init()) {
  if (!easy_) throw std::bad_alloc();
}

bool Handle::connectionEnded() const {
  curl_socket_t socket = CURL_SOCKET_BAD;
  if (curl_easy_getinfo(easy_, CURLINFO_ACTIVESOCKET, &socket) != CURLE_OK || socket == CURL_SOCKET_BAD) return false;
  pollfd wait{socket, POLLIN, 0};
  return ::poll(&wait, 1, 0) > 0;
}

std::unique_ptr<Handle> HandlePool::takeIdle(const std::string& identity) {
  const std::scoped_lock lock(mutex_);
  const auto found =
      std::find_if(idle_.rbegin(), idle_.rend(), [&](const auto& handle) { return handle->identity() == identity; });
  if (found == idle_.rend()) return nullptr;
  auto handle = std::move(*found);
  idle_.erase(std::next(found).base());
  return handle;
}

std::unique_ptr<Handle> HandlePool::take(const std::string& identity) {
  auto idle = takeIdle(identity);
  // Under TLS the library takes a server's farewell for a sign of life, and the request would be lost on the way.
  if (idle && !idle->connectionEnded()) return idle;
  return std::make_unique<Handle>(identity);
}

void HandlePool::giveBack(std::unique_ptr<Handle> handle) {
  curl_easy_reset(handle->easy());  // keeps connections, TLS sessions and looked-up names
  handle->tlsEvents = {};
  std::unique_ptr<Handle> surplus;  // goes after the lock: closing connections takes time
  const std::scoped_lock lock(mutex_);
  if (idle_.size() == mostIdle) {
    surplus = std::move(idle_.front());
    idle_.erase(idle_.begin());
  }
  idle_.push_back(std::move(handle));
}

}  // namespace kartix::adapters
