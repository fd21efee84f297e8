#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kartix {

class KBAInterface;
class Runtime;

/// What the clerk entered when asked for a new gateway password.
struct PasswordChange {
  std::int16_t result = -1;  ///< 1 confirmed, -1 cancelled
  std::string oldPassword;
  std::string newPassword;
};

/// Asks the clerk for a new gateway password.
class PasswordPrompt {
 public:
  virtual ~PasswordPrompt() = default;
  virtual PasswordChange askNewPassword() = 0;
};

/// Results of a login beyond the gateway's own codes.
namespace login_result {
inline constexpr std::int32_t failed = -1;           ///< no answer of a login
inline constexpr std::int32_t lastSuccess = 999;     ///< 0 to 999 are logged in
inline constexpr std::int32_t notLoggedIn = 3020;    ///< an exchange was answered so: the session needs a login
inline constexpr std::int32_t noSuchSession = 3000;  ///< likewise, at the personaliser
inline constexpr std::int32_t refused = 99999;

/// True for the codes of a password that has to be changed; as a result, the clerk cancelled that.
bool changeDemanded(std::int32_t code);
}  // namespace login_result

/// The clerk's login at the gateway.
class Login {
 public:
  Login(Runtime& runtime, KBAInterface& kba, PasswordPrompt& prompt)
      : runtime_(runtime), kba_(kba), prompt_(prompt) {}

  /// Logs in, lets the clerk change an expired password and tells of one that expires soon. Returns 0 to 999 when
  /// logged in, 3005 or 3006 when the clerk cancelled the change, else one of `login_result`; every failure has been
  /// reported. `returnText` gets the gateway's text. `newPassword` asks for a change; it is emptied when the gateway
  /// has confirmed it.
  ///
  /// A change that nobody has confirmed or refused leaves the old password where it is. When the old one is refused
  /// afterwards, the new one is tried, until that is refused too; so is one that is confirmed and could not be
  /// stored.
  std::int32_t ZEVISLogin(std::string password, std::string& returnText, std::string& newPassword);

 private:
  struct Answer;
  /// Passwords of which one may count at the gateway in place of the stored one.
  struct Alternatives {
    std::string user;
    std::string oldPassword;                ///< the stored one
    std::vector<std::string> newPasswords;  ///< the latest comes last
  };

  Answer attempt(const std::string& password, const std::string& newPassword);
  std::optional<Answer> ask(const std::string& password, const std::string& newPassword, const std::string& stored);
  void doubt(const std::string& stored, const std::string& newPassword, std::string_view reason);
  std::optional<std::string> alternativeTo(const std::string& stored, const std::string& refused);
  bool adopt(const std::string& stored, const std::string& newPassword);
  bool askForChange(std::string& newPassword, std::int32_t& result);

  Runtime& runtime_;
  KBAInterface& kba_;
  PasswordPrompt& prompt_;
  std::optional<Alternatives> unclear_;
};

}  // namespace kartix
