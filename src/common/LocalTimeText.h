#pragma once

#include <optional>
#include <string_view>

#include "platform/Clock.h"

namespace kartix {

/// The moment that `text` ("YYYY-MM-DDTHH:MM:SS") names; nothing when it has another form or is no such moment.
std::optional<platform::LocalTime> parseLocalTime(std::string_view text);

}  // namespace kartix
