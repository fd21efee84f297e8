#pragma once

#include <array>
#include <string_view>

namespace kartix::simulator {

/// Return codes of the login.
namespace login_code {
inline constexpr int loggedIn = 0;
inline constexpr int changed = 300;
inline constexpr int expiresSoon = 500;
inline constexpr int refused = 1000;
inline constexpr int wrongPassword = 3001;
inline constexpr int mustChange = 3005;
inline constexpr int hasExpired = 3006;
inline constexpr int newPasswordUnfit = 3007;
}  // namespace login_code

/// An account of the simulated gateway.
struct SampleAccount {
  std::string_view user;
  int code;                      ///< what a login with the right password is answered with
  std::string_view description;  ///< one line, in English
};

/// Password of every account until it is changed.
inline constexpr std::string_view samplePassword = "geheim01";

inline constexpr std::array sampleAccounts = {
    SampleAccount{"kartix", login_code::loggedIn, "logs in"},
    SampleAccount{"kartix-500", login_code::expiresSoon, "logs in, the password expires soon"},
    SampleAccount{"kartix-3005", login_code::mustChange, "the password must be changed"},
    SampleAccount{"kartix-3006", login_code::hasExpired, "the password has expired and must be changed"},
    SampleAccount{"kartix-1000", login_code::refused, "is refused"},
};

}  // namespace kartix::simulator
