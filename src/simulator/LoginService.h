#pragma once

#include <deque>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Books.h"
#include "simulator/Element.h"
#include "simulator/Scenario.h"

namespace kartix::simulator {

/// Logins and the sessions that come of them. A session lives in two cookies, "kba.session" and "JServSessionIdroot",
/// and lasts as long as this object; the oldest of more than 256 ends.
class LoginService {
 public:
  explicit LoginService(Ledger& ledger) : ledger_(ledger) {}

  /// Answers a login; `cookies` receives what the answer sets, each as "name=value".
  Element logIn(const Element& request, Scenario scenario, std::vector<std::string>& cookies);

  /// Whether a request with this `Cookie` header belongs to a session: both cookies are there and of one login.
  bool isLoggedIn(std::string_view cookieHeader) const;

  void endAllSessions() { sessions_.clear(); }

 private:
  struct Session {
    std::string first;
    std::string second;
  };

  /// What the right password of the account is answered with.
  int outcomeFor(const std::string& user, const Account& account, Scenario scenario) const;
  Element changePassword(const std::string& user, const std::string& newPassword);
  std::vector<std::string> openSession();

  Ledger& ledger_;
  std::deque<Session> sessions_;
  std::set<std::string> renewed_;  ///< users whose password has been changed since this object was made
};

}  // namespace kartix::simulator
