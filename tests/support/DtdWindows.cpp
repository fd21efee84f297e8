#include "support/Dtd.h"

namespace kartix::test {

// The same documents are validated where the XML library can.
std::string dtdViolations(const std::string&) { return {}; }

}  // namespace kartix::test
