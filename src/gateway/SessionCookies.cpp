#include "gateway/SessionCookies.h"

#include "runtime/Runtime.h"

namespace kartix {

std::string_view SessionCookies::name(int number) { return number == 1 ? "kba.session" : "JServSessionIdroot"; }

std::string SessionCookies::key(int number) const {
  return "COOKIE-" + std::to_string(runtime_.konfiguration.CookieSlot) + "-" + std::to_string(number);
}

std::string SessionCookies::ReadSessionCookie(int number) {
  Konfiguration& settings = runtime_.konfiguration;
  if (!settings.InfoDatei.empty()) return settings.GetIni(settings.InfoDatei, settings.SektionKennung, key(number));
  const auto found = memory_.find(key(number));
  return found == memory_.end() ? std::string() : found->second;
}

void SessionCookies::WriteSessionCookie(int number, const std::string& value) {
  if (runtime_.konfiguration.InfoDatei.empty()) {
    memory_[key(number)] = value;
  } else {
    runtime_.konfiguration.writeIni(key(number), value);
  }
}

}  // namespace kartix
