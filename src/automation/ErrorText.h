#pragma once

#include <string_view>

namespace kartix::automation {

/// The words for the last call on this thread. They are kept in a place of fixed size: a failure for want of memory
/// can still be told. What does not fit is cut off.
void setErrorText(std::string_view text) noexcept;
const char* errorText() noexcept;

}  // namespace kartix::automation
