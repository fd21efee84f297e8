#include <winsock2.h>
#include <windows.h>

#include "adapters/curl/Watch.h"

namespace kartix::adapters {

bool speaks(curl_socket_t socket, std::chrono::milliseconds wait) {
  WSAPOLLFD watched{socket, POLLRDNORM, 0};
  return WSAPoll(&watched, 1, static_cast<int>(wait.count())) != 0;
}

}  // namespace kartix::adapters
