#pragma once

#include <map>
#include <string>
#include <string_view>

namespace kartix {

class Runtime;

/// The two cookies of the gateway session. They are kept in the ini file of the installation under the slot of the
/// sending clerk, so that the next run goes on with the session; without an ini file they live as long as this
/// object.
class SessionCookies {
 public:
  explicit SessionCookies(Runtime& runtime) : runtime_(runtime) {}

  /// Name of cookie `number` (1 or 2) at the gateway.
  static std::string_view name(int number);

  /// Stored value of cookie `number`; empty when there is none.
  std::string ReadSessionCookie(int number);
  /// Stores it. A failed write is ignored: the gateway then asks for a new login.
  void WriteSessionCookie(int number, const std::string& value);

 private:
  std::string key(int number) const;

  Runtime& runtime_;
  std::map<std::string, std::string> memory_;
};

}  // namespace kartix
