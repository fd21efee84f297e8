#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "simulator/Answers.h"
#include "simulator/Books.h"
#include "simulator/LoginService.h"
#include "simulator/Scenario.h"

namespace kartix::simulator {

/// Answer to one request.
struct Reply {
  Element document;
  std::vector<std::string> cookies;  ///< to be set, each as "name=value"
  int code = 0;                      ///< return code of the document; 0 when it has none

  bool ordered = false;  ///< an order or a cancellation has been carried out
};

/// The gateway behind the wire: login, register and personaliser on common books. May be called from several threads.
class Gateway {
 public:
  /// Throws `BadFile`; see `Ledger`.
  Gateway(StateStore* store, platform::Clock& clock, Scenario scenario)
      : ledger_(store), clock_(clock), scenario_(scenario) {}

  /// Answers a request of a known kind. `cookieHeader` is its `Cookie` header.
  Reply answer(const Element& request, std::string_view cookieHeader);

  /// Scenarios of the wire have no effect here.
  void setScenario(Scenario scenario);
  Scenario scenario() const;

  std::vector<Order> orders() const;

 private:
  Element documentFor(const Element& request, std::string_view cookieHeader, std::vector<std::string>& cookies);
  bool isLoggedIn(std::string_view cookieHeader);
  Element carryOut(const Element& request);

  mutable std::mutex mutex_;
  Ledger ledger_;
  LoginService logins_{ledger_};
  platform::Clock& clock_;
  Scenario scenario_;
  bool sessionsForgotten_ = false;  ///< the one time of `notLoggedInOnce` has been
};

}  // namespace kartix::simulator
