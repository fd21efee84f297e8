#pragma once

#include <string>
#include <string_view>

namespace kartix::adapters::windows {

/// Writes `bytes` beside `file` (UTF-8) first, and puts that in place when the disk has it. False when nothing was
/// replaced.
bool replaceWholeFile(const std::string& file, std::string_view bytes);

}  // namespace kartix::adapters::windows
