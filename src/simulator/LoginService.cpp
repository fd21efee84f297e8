#include "simulator/LoginService.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <random>
#include <utility>

#include "common/Text.h"
#include "simulator/Accounts.h"
#include "simulator/Answers.h"

namespace kartix::simulator {
namespace {

constexpr std::string_view firstCookie = "kba.session";
constexpr std::string_view secondCookie = "JServSessionIdroot";

std::string randomToken() {
  std::random_device source;
  std::string token;
  for (int i = 0; i < 4; ++i) {
    std::array<char, 9> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x", source());
    token += digits.data();
  }
  return token;
}

/// Value of a cookie in a `Cookie` header; empty when it is not there.
std::string cookieValue(std::string_view header, std::string_view name) {
  while (!header.empty()) {
    const auto end = std::min(header.find(';'), header.size());
    const std::string pair = text::trim(header.substr(0, end));
    if (pair.size() > name.size() && pair.starts_with(name) && pair[name.size()] == '=') {
      return pair.substr(name.size() + 1);
    }
    header.remove_prefix(std::min(end + 1, header.size()));
  }
  return {};
}

bool isFitPassword(std::string_view password) {
  constexpr std::size_t shortest = 6;
  constexpr std::size_t longest = 20;
  const std::size_t length = text::length(password);
  return length >= shortest && length <= longest && password.find(' ') == std::string_view::npos;
}

bool mustChange(int code) { return code == login_code::mustChange || code == login_code::hasExpired; }

std::string_view textOf(int code) {
  switch (code) {
    case login_code::loggedIn:
      return "Anmeldung erfolgreich";
    case login_code::expiresSoon:
      return "Ihr Passwort läuft in 5 Tagen ab.";
    case login_code::mustChange:
      return "Das Passwort muss geändert werden.";
    case login_code::hasExpired:
      return "Das Passwort ist abgelaufen.";
    default:
      return "Die Kennung ist gesperrt.";
  }
}

}  // namespace

Element LoginService::logIn(const Element& request, Scenario scenario, std::vector<std::string>& cookies) {
  const std::string user = request.value("KENN");
  const std::string newPassword = request.value("PASSN");
  const auto& accounts = ledger_.books().accounts;
  const auto account = accounts.find(user);
  if (account == accounts.end() || account->second.password != request.value("PASS")) {
    return loginAnswer(login_code::wrongPassword, "Kennung oder Passwort ist falsch.");
  }
  const int code = outcomeFor(user, account->second, scenario);
  if (code >= login_code::refused && !mustChange(code)) return loginAnswer(code, textOf(code));
  if (!newPassword.empty()) return changePassword(user, newPassword);
  if (!mustChange(code)) cookies = openSession();
  return loginAnswer(code, textOf(code));
}

int LoginService::outcomeFor(const std::string& user, const Account& account, Scenario scenario) const {
  if (scenario == Scenario::loginRefused) return login_code::refused;
  if (renewed_.contains(user)) return account.code;
  if (scenario == Scenario::passwordExpired) return login_code::mustChange;
  if (scenario == Scenario::passwordExpiresSoon) return login_code::expiresSoon;
  return account.code;
}

Element LoginService::changePassword(const std::string& user, const std::string& newPassword) {
  Books next = ledger_.books();
  Account& account = next.accounts.find(user)->second;
  if (!isFitPassword(newPassword) || newPassword == account.password) {
    return loginAnswer(login_code::newPasswordUnfit, "Das neue Passwort ist nicht zulässig.");
  }
  account = {newPassword, login_code::loggedIn};
  if (!ledger_.commit(std::move(next))) return loginAnswer(return_code::cannotBeKept, cannotBeKeptText);
  renewed_.insert(user);
  return loginAnswer(login_code::changed, "Das Passwort wurde geändert.");
}

std::vector<std::string> LoginService::openSession() {
  constexpr std::size_t mostSessions = 256;
  sessions_.push_back({randomToken(), randomToken()});
  if (sessions_.size() > mostSessions) sessions_.pop_front();
  const auto cookie = [](std::string_view name, const std::string& value) {
    return std::string(name).append("=").append(value);
  };
  return {cookie(firstCookie, sessions_.back().first), cookie(secondCookie, sessions_.back().second)};
}

bool LoginService::isLoggedIn(std::string_view cookieHeader) const {
  const std::string first = cookieValue(cookieHeader, firstCookie);
  const std::string second = cookieValue(cookieHeader, secondCookie);
  return std::any_of(sessions_.begin(), sessions_.end(),
                     [&](const Session& session) { return session.first == first && session.second == second; });
}

}  // namespace kartix::simulator
