#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace kartix {

class Runtime;

/// The two cookies of the gateway session. They are kept in the ini file of the installation under the slot of the
/// sending clerk, so that the next run goes on with the session. What the ini file does not take, or without one,
/// lives as long as this object, and goes before what the file holds.
class SessionCookies {
 public:
  /// Texts of cookie 1 and cookie 2; empty for one that there is not.
  using Pair = std::array<std::string, 2>;

  explicit SessionCookies(Runtime& runtime) : runtime_(runtime) {}

  /// Name of cookie `number` (1 or 2) at the gateway.
  static std::string_view name(int number);

  /// Both cookies to send with a request; both are empty unless both are known and can be sent.
  Pair toSend();
  /// Keeps what an answer has set, both or none: one that could not be sent back leaves both as they are, which is
  /// traced.
  void keep(const Pair& set);

  /// Stored value of cookie `number`; empty when there is none.
  std::string ReadSessionCookie(int number);

 private:
  std::string key(int number) const;
  std::string place(int number) const;
  std::string remembered(int number) const;
  bool fileTakes(const Pair& cookies);
  bool WriteSessionCookie(int number, const std::string& value);

  Runtime& runtime_;
  std::map<std::string, std::string> memory_;  ///< by place
};

}  // namespace kartix
