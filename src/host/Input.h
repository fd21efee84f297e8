#pragma once

#include <string>

namespace kartix::host {

/// One line of standard input. A person who sits there is asked for `what`, and what is secret does not show. Raises
/// `UsageError` when there is none: a pipe whose other end has failed must not pass for an empty answer.
std::string readLine(const std::string& what, bool secret);

}  // namespace kartix::host
