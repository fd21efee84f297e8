#pragma once

#include <curl/curl.h>

#include <chrono>

namespace kartix::adapters {

/// True when, within `wait`, something can be read from `socket`, its end included, or when it cannot be watched.
bool speaks(curl_socket_t socket, std::chrono::milliseconds wait);

}  // namespace kartix::adapters
