#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kartix::simulator {

/// What the gateway does instead of its usual work.
enum class Scenario {
  none,
  connectionClosed,
  orderAcceptedThenClosed,
  halfAnswer,
  notXml,
  http500,
  oversizedAnswer,
  emptyAnswer,
  unknownAnswer,
  notLoggedInOnce,
  notLoggedIn,
  passwordExpired,
  passwordExpiresSoon,
  loginRefused,
  refused,
  refusedWithList,
  tooManyHits,
  noHit,
  slowAnswer,
};

struct ScenarioName {
  Scenario scenario;
  std::string_view name;
  std::string_view description;  ///< one line, in English, for an administrator
};

/// All of them, `none` first. Each applies to every exchange unless its description says otherwise.
std::span<const ScenarioName> scenarios();

/// The scenario called `name`, or nothing.
const ScenarioName* findScenario(std::string_view name);

/// The names, separated by ", ".
std::string scenarioNames();

}  // namespace kartix::simulator
