#pragma once

#include <map>
#include <string>

#include "support/Files.h"

/// Requests that the component sends, as the tests of whole operations store them.
namespace kartix::test {

using Values = std::map<std::string, std::string>;

/// The stored request with other values in its elements; "-" takes an element out.
inline std::string request(const std::string& name, const Values& changes = {}) {
  std::string text = readBytes(std::string(KARTIX_REQUESTS) + "/" + name + ".xml");
  for (const auto& [element, value] : changes) {
    const std::string end = "</" + element + ">";
    const auto at = text.find("<" + element + ">");
    const auto size = text.find(end, at) + end.size() - at;
    text.replace(at, size, value == "-" ? "" : "<" + element + ">" + value + end);
  }
  return text;
}

inline std::string login(const std::string& user, const std::string& password, const std::string& fresh = "-") {
  return request("login-change", {{"KENN", user}, {"PASS", password}, {"PASSN", fresh}});
}

inline std::string inquiry(const std::string& card) { return request("card", {{"kgknr", card}}); }

/// By a person's data alone.
inline std::string inquiry(Values person) {
  person.insert({{"vname", "-"}, {"gnamb", "-"}, {"gname", "-"}, {"fnamb", "-"}, {"dgebu", "-"}, {"gort", "-"}});
  person.insert({"name", "-"});
  return request("person", person);
}

inline std::string notification(const std::string& card, const std::string& status) {
  return request("notification", {{"kgknr", card}, {"scode", status}});
}

inline std::string cancellation(const std::string& card) { return request("cancellation", {{"cardNumber", card}}); }

/// An order; `changes` take the place of good values.
inline std::string order(const std::string& mark, Values changes = {}) {
  changes.insert({{"externalAdministrationMark", mark},
                  {"cardHolderSurnameRegister", "&#272;or&#273;evi&#263;"},
                  {"photograph", "/9j/4AAQ"},
                  {"signature", "/9j/2wBD\nAA=="}});
  return request("order", changes);
}

}  // namespace kartix::test
