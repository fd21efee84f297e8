#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Failures.h"
#include "simulator/HttpServer.h"
#include "simulator/Order.h"
#include "simulator/Scenario.h"
#include "simulator/StateStore.h"

namespace kartix::platform {
class Clock;
}

namespace kartix::simulator {

/// One request and what became of it.
struct Exchange {
  std::string path;
  std::string request;  ///< document element, such as "zkr-anfrage"; empty when the request was not read or no XML
  std::string outcome;  ///< answer's document element and return code, or what happened in its place

  friend bool operator==(const Exchange&, const Exchange&) = default;
};

/// Where and how the gateway runs.
struct SimulatorOptions {
  std::string host = "127.0.0.1";
  int port = 0;  ///< 0 takes any free one
  std::optional<TlsFiles> tls = {};
  StateStore* state = nullptr;  ///< where the state outlives this object; null keeps it in memory
  Scenario scenario = Scenario::none;
  std::chrono::milliseconds slowness = std::chrono::seconds(10);  ///< of the scenario for a slow answer
  platform::Clock* clock = nullptr;                               ///< the system's when null
  /// Called after each exchange, one at a time; it must not call the simulator.
  std::function<void(const Exchange&)> onExchange = {};
};

/// A gateway to test against: login, register and personaliser behind one address. The document element decides what
/// a request is, whatever its path; `paths` are the ones that a sample installation uses.
///
/// ```cpp
/// simulator::Simulator gateway({.scenario = simulator::Scenario::notLoggedInOnce});
/// configure(gateway.port());
/// ...
/// for (const auto& order : gateway.orders()) std::cout << order.externalAdministrationMark << '\n';
/// ```
class Simulator {
 public:
  /// Listens when it returns. Throws `StartFailure`, for a file that cannot be used `BadFile`.
  explicit Simulator(SimulatorOptions options);
  /// Stops; a request that is being answered is finished first.
  ~Simulator();
  Simulator(const Simulator&) = delete;
  Simulator& operator=(const Simulator&) = delete;

  int port() const;

  /// Takes effect with the next request.
  void setScenario(Scenario scenario);

  /// The last 10,000 exchanges, oldest first.
  std::vector<Exchange> exchanges() const;

  /// Every order accepted so far, cancelled ones too, oldest first.
  std::vector<Order> orders() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

namespace paths {
inline constexpr const char* login = "/zevis/login";
inline constexpr const char* inquiry = "/zkr/anfrage";
inline constexpr const char* order = "/personalisierer/bestellung";  ///< and cancellation
inline constexpr const char* notification = "/zkr/mitteilung";
}  // namespace paths

}  // namespace kartix::simulator
