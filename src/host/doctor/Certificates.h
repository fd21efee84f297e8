#pragma once

#include <string>

#include "host/doctor/Finding.h"

namespace kartix::host {

/// Checks the client certificate and its private key (PEM files): readable, in force for another while, the pass
/// phrase right, and made for each other.
Findings checkCertificate(const std::string& certificateFile, const std::string& keyFile, const std::string& phrase);

}  // namespace kartix::host
