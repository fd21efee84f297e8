#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/demo/DemoInstallation.h"
#include "platform/Clock.h"
#include "simulator/Scenario.h"

namespace kartix::host {

/// The result properties that a later act needs.
struct LastCard {
  std::string kartennr;
};

/// One operation of the demonstration: what the clerk does, and how it must end.
struct Act {
  std::string title;
  std::string operation;
  std::string person;
  std::string lfdnr;
  std::string script;  ///< JSON
  std::int32_t result = 1;
  std::string scode = {};  ///< register status that the result must show; empty when it does not matter
  std::optional<platform::LocalTime> now = {};
  simulator::Scenario scenario = simulator::Scenario::none;
  /// What the host application does before: writes the outcome of the last act to its database, say.
  std::function<void(const DemoInstallation&, const LastCard&)> before = {};
};

/// The demonstration, act by act: both roads of an inquiry, the life of one person's cards, and what can go wrong.
std::vector<Act> demoActs();

}  // namespace kartix::host
