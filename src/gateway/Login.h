#pragma once

#include <cstdint>
#include <string>

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
}  // namespace login_result

/// One attempt at the gateway's login, as it was answered.
struct LoginAnswer {
  std::int32_t status = 0;  ///< as `KBAInterface::PostXml` returns it
  std::string errorText;
  std::string kind;       ///< name of the answer's document element
  std::int32_t RETC = 0;  ///< return code
  std::string RETT;       ///< return text

  bool isLogin() const { return kind == "ZEVIS-HINWEIS"; }
};

/// Logs in once with the configured user, without a word to the clerk. An empty `newPassword` asks for no change.
LoginAnswer attemptLogin(Runtime& runtime, KBAInterface& kba, const std::string& password,
                         const std::string& newPassword);

/// The clerk's login at the gateway.
class Login {
 public:
  Login(Runtime& runtime, KBAInterface& kba, PasswordPrompt& prompt)
      : runtime_(runtime), kba_(kba), prompt_(prompt) {}

  /// Logs in, lets the clerk change an expired password and tells of one that expires soon. Returns 0 to 999 when
  /// logged in, 3005 or 3006 when the clerk cancelled the change, else one of `login_result`; every failure has been
  /// reported. `returnText` gets the gateway's text. `newPassword` asks for a change; it is emptied when the gateway
  /// has confirmed it.
  std::int32_t ZEVISLogin(std::string password, std::string& returnText, std::string& newPassword);

 private:
  Runtime& runtime_;
  KBAInterface& kba_;
  PasswordPrompt& prompt_;
};

}  // namespace kartix
