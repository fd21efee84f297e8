#include "gateway/SessionCookies.h"

#include <algorithm>

#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::array<int, 2> numbers = {1, 2};

/// A request's line would end within such a value.
bool canBeSent(std::string_view value) {
  constexpr unsigned char firstPrintable = ' ';
  constexpr unsigned char deleted = 0x7F;
  return std::none_of(value.begin(), value.end(),
                      [](unsigned char c) { return c < firstPrintable || c == deleted || c == ';'; });
}

}  // namespace

std::string_view SessionCookies::name(int number) { return number == 1 ? "kba.session" : "JServSessionIdroot"; }

std::string SessionCookies::key(int number) const {
  return "COOKIE-" + std::to_string(runtime_.konfiguration.CookieSlot) + "-" + std::to_string(number);
}

std::string SessionCookies::place(int number) const {
  const Konfiguration& settings = runtime_.konfiguration;
  return settings.InfoDatei + '\n' + settings.SektionKennung + '\n' + key(number);
}

std::string SessionCookies::remembered(int number) const {
  const auto found = memory_.find(place(number));
  return found == memory_.end() ? std::string() : found->second;
}

std::string SessionCookies::ReadSessionCookie(int number) {
  Konfiguration& settings = runtime_.konfiguration;
  std::string value = remembered(number);
  if (!value.empty() || settings.InfoDatei.empty()) return value;
  return settings.GetIni(settings.InfoDatei, settings.SektionKennung, key(number));
}

SessionCookies::Pair SessionCookies::toSend() {
  Pair cookies = {ReadSessionCookie(1), ReadSessionCookie(2)};
  const bool complete = std::all_of(cookies.begin(), cookies.end(),
                                    [](const std::string& value) { return !value.empty() && canBeSent(value); });
  return complete ? cookies : Pair();
}

void SessionCookies::keep(const Pair& set) {
  if (set == Pair()) return;
  if (!std::all_of(set.begin(), set.end(), canBeSent)) {
    runtime_.trace.TraceLine("Sitzungscookies der Antwort verworfen: sie lassen sich nicht zurücksenden",
                             trace_level::calls);
    return;
  }
  // What the file has not taken yet goes with what is new: it must not end up with one of each session.
  Pair cookies = {remembered(1), remembered(2)};
  for (const int number : numbers) {
    const std::string& value = set.at(number - 1);
    if (!value.empty()) cookies.at(number - 1) = value;
  }
  const bool stored = fileTakes(cookies);
  for (const int number : numbers) {
    const std::string& value = cookies.at(number - 1);
    if (stored) {
      memory_.erase(place(number));
    } else if (!value.empty()) {
      memory_[place(number)] = value;
    }
  }
}

bool SessionCookies::fileTakes(const Pair& cookies) {
  const Konfiguration& settings = runtime_.konfiguration;
  if (settings.InfoDatei.empty()) return false;
  constexpr std::string_view consequence = "; sie gelten bis zum Ende des Programms";
  const auto refuse = [&](std::string_view why) {
    std::string line = "Sitzungscookies nicht gespeichert: ";
    runtime_.trace.TraceLine(line.append(why).append(consequence), trace_level::calls);
    return false;
  };
  if (!std::all_of(cookies.begin(), cookies.end(), [&](const auto& value) { return settings.iniKeeps(value); })) {
    return refuse("die Ini-Datei nimmt ihre Zeichen nicht auf");
  }
  if (!std::all_of(numbers.begin(), numbers.end(),
                   [&](int number) { return WriteSessionCookie(number, cookies.at(number - 1)); })) {
    return refuse("die Ini-Datei lässt sich nicht schreiben: " + settings.InfoDatei);
  }
  return true;
}

/// False when the file does not take it; nothing is to be written of a cookie that there is not.
bool SessionCookies::WriteSessionCookie(int number, const std::string& value) {
  return value.empty() || runtime_.konfiguration.writeIni(key(number), value);
}

}  // namespace kartix
