#include "scenarios/HostData.h"

namespace kartix::test {

std::unique_ptr<HostData> hostOnServer() { return nullptr; }

}  // namespace kartix::test
