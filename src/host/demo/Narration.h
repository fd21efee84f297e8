#pragma once

#include <span>
#include <string>
#include <string_view>

#include "simulator/Simulator.h"

namespace kartix::host {

/// Tells on standard output what a transcript holds: windows, what the clerk did there, and what the host's objects
/// were asked to do.
void narrateTranscript(std::string_view transcript);

/// The requests that reached the gateway, one a line.
void narrateExchanges(std::span<const simulator::Exchange> exchanges);

}  // namespace kartix::host
