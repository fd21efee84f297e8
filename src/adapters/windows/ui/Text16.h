#pragma once

#include <string>
#include <string_view>

#include "adapters/windows/Wide.h"

namespace kartix::adapters::native {

using windows::narrow;
using windows::wide;

/// `utf8` with "\r\n" for every line break, as fields of several lines want it.
std::wstring wideLines(std::string_view utf8);

}  // namespace kartix::adapters::native
