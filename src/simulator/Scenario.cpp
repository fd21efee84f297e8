#include "simulator/Scenario.h"

#include <algorithm>
#include <array>

namespace kartix::simulator {
namespace {

constexpr std::array names = {
    ScenarioName{Scenario::none, "none", "answers like the register (the default)"},
    ScenarioName{Scenario::connectionClosed, "connection-closed", "closes the connection, the request is not read"},
    ScenarioName{Scenario::orderAcceptedThenClosed, "order-accepted-then-closed",
                 "carries out an order or a cancellation, then closes the connection without an answer"},
    ScenarioName{Scenario::halfAnswer, "half-answer", "carries out the request, breaks off after half of the answer"},
    ScenarioName{Scenario::notXml, "not-xml", "answers with text that is not XML"},
    ScenarioName{Scenario::http500, "http-500", "answers with HTTP status 500"},
    ScenarioName{Scenario::oversizedAnswer, "oversized-answer", "answers with more than 16 MiB"},
    ScenarioName{Scenario::emptyAnswer, "empty-answer", "answers with an empty body"},
    ScenarioName{Scenario::unknownAnswer, "unknown-answer", "answers with a document of another kind"},
    ScenarioName{Scenario::notLoggedInOnce, "not-logged-in-once",
                 "forgets all sessions at the first request but a login"},
    ScenarioName{Scenario::notLoggedIn, "not-logged-in", "takes every request but a login for not logged in"},
    ScenarioName{Scenario::passwordExpired, "password-expired", "login: 3005 until the password is changed"},
    ScenarioName{Scenario::passwordExpiresSoon, "password-expires-soon", "login: 500"},
    ScenarioName{Scenario::loginRefused, "login-refused", "login: 1000"},
    ScenarioName{Scenario::refused, "refused", "refuses every request but a login, without a list of errors"},
    ScenarioName{Scenario::refusedWithList, "refused-with-list",
                 "the same, with a list of two errors for order, cancellation and notification"},
    ScenarioName{Scenario::tooManyHits, "too-many-hits", "inquiry: 57 hits, too many for a list"},
    ScenarioName{Scenario::noHit, "no-hit", "inquiry: no hit"},
    ScenarioName{Scenario::slowAnswer, "slow-answer", "answers after ten seconds"},
};

}  // namespace

std::span<const ScenarioName> scenarios() { return names; }

const ScenarioName* findScenario(std::string_view name) {
  const auto* const found =
      std::find_if(names.begin(), names.end(), [&](const ScenarioName& known) { return known.name == name; });
  return found == names.end() ? nullptr : found;
}

std::string scenarioNames() {
  std::string list;
  for (const ScenarioName& known : names) list.append(list.empty() ? "" : ", ").append(known.name);
  return list;
}

}  // namespace kartix::simulator
