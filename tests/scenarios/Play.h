#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "adapters/script/Script.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "scenarios/Scenario.h"
#include "support/LoopbackServer.h"
#include "support/TempDir.h"

namespace kartix::test {

/// What a scenario led to.
struct Outcome {
  bool init = false;
  std::int32_t result = -1;
  std::vector<std::pair<std::string, std::string>> properties;
  Json transcript = Json::array();  ///< events in their order
  std::optional<std::string> scriptMismatch;
  std::vector<RecordedRequest> requests;
  std::vector<std::string> tunnels;  ///< heads of the requests to the secure proxy
};

/// A gateway that answers as `replies` of a scenario says, and after the last of them no more.
LoopbackServer::Script repliesOf(const Json& scenario);

/// What a host calls by name, as a late-bound one does: whether the session begins, and the result of an operation.
bool beginSession(dispatch::Object& kartix, const std::string& clerk, const std::string& person);
std::int32_t carryOut(dispatch::Object& kartix, const std::string& operation, const std::string& lfdnr);

/// Makes the scenario write the trace of level 1 that `Installation::trace` gives.
void traceCalls(Json& scenario);

/// An installation made as a scenario says, in a directory of its own: settings store, ini file, host database and
/// gateway, all real.
class Installation {
 public:
  /// Raises `BadScenario`. Without a `gateway` that of `repliesOf`.
  explicit Installation(const Json& scenario, LoopbackServer::Script gateway = nullptr);

  /// The scenario with its names (`$DIR` and the like) replaced.
  const Json& scenario() const { return scenario_; }
  const Json& names() const { return names_; }

  /// Lets the clerk carry out the operation, and lets the component go.
  Outcome play();

  // The parts of a play, for those who put it together otherwise.
  adapters::Script script() const;
  /// Settings, clock and authorities; everything else is left to the caller.
  Setup setup() const;

  /// A stored setting ("ZKR.KENZA"), unscrambled when it is a secret.
  std::string storedSetting(const std::string& path) const;
  std::string storedIni(const std::string& path) const;
  std::filesystem::path file(const std::string& name) const { return directory_ / name; }
  std::string trace() const;

 private:
  void startGateway(const Json& gateway, LoopbackServer::Script script);
  void writeSettings() const;
  /// What fills the host database.
  std::vector<std::string> hostStatements() const;

  TempDir directory_;
  std::optional<TestAuthority> authority_;
  std::unique_ptr<LoopbackServer> gateway_;
  std::unique_ptr<ConnectProxy> proxy_;
  std::shared_ptr<void> held_;
  Json names_;
  Json scenario_;
};

}  // namespace kartix::test
