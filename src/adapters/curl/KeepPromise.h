#pragma once

#include <chrono>
#include <string_view>

namespace kartix::adapters {

/// What an answer says about keeping its connection open.
struct KeepPromise {
  /// Longest time without a request for which a connection is used again; servers end theirs sooner or later.
  static constexpr std::chrono::seconds longestIdle{60};

  bool given = false;                        ///< the server says that it keeps the connection
  std::chrono::seconds limit = longestIdle;  ///< how long the connection may be idle, safely within what was said

  /// Takes a field of the answer's head into account.
  void read(std::string_view name, std::string_view value);
};

}  // namespace kartix::adapters
