#pragma once

#include <string>

namespace kartix::test {

/// What the message `document` violates of the document type that the tests own for its root element, or why it is
/// no message at all; empty when it is valid.
std::string dtdViolations(const std::string& document);

}  // namespace kartix::test
