#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kartix::simulator {

/// Where the gateway keeps its books from one run to the next. The text is JSON and holds passwords.
class StateStore {
 public:
  virtual ~StateStore() = default;

  /// What was stored last; nothing when there is nothing yet. Throws `BadFile` when it cannot be read.
  virtual std::optional<std::string> read() = 0;

  /// Stores `text` in place of the former one, wholly or not at all. False when it could not.
  virtual bool replace(std::string_view text) = 0;
};

}  // namespace kartix::simulator
