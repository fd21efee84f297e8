#include <poll.h>

#include "adapters/curl/Watch.h"

namespace kartix::adapters {

bool speaks(curl_socket_t socket, std::chrono::milliseconds wait) {
  pollfd watched{socket, POLLIN, 0};
  return ::poll(&watched, 1, static_cast<int>(wait.count())) != 0;
}

}  // namespace kartix::adapters
