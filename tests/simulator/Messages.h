#pragma once

#include <map>
#include <string>

/// Requests in the form in which the component sends them, as far as the gateway reads them.
namespace kartix::test {

using Values = std::map<std::string, std::string>;

/// Elements in a group; "-" leaves one out.
inline std::string group(const std::string& name, const Values& values) {
  std::string text = "<" + name + ">";
  for (const auto& [element, value] : values) {
    if (value == "-") continue;
    text.append("<").append(element).append(">").append(value).append("</").append(element).append(">");
  }
  return text + "</" + name + ">";
}

inline std::string message(const std::string& root, const std::string& content) {
  return R"(<?xml version="1.0" encoding="ISO-8859-1"?><!DOCTYPE )" + root +
         R"( SYSTEM "http://zevis.example/x.dtd"><)" + root + ">" + content + "</" + root + ">";
}

inline std::string login(const std::string& user, const std::string& password, const std::string& fresh = "-") {
  return R"(<?xml version="1.0" encoding="ISO-8859-1"?>)" +
         group("ZEVIS-LOGIN", {{"KENN", user}, {"PASS", password}, {"PASSN", fresh}});
}

/// By one of "kgknr" and "fsnfk", or by a person's data.
inline std::string inquiry(const std::string& element, const std::string& value) {
  return message("zkr-anfrage", group("anfrage", {{"kenza", "05315000"}, {element, value}}));
}
inline std::string inquiry(const Values& person) {
  return message("zkr-anfrage", "<anfrage><kenza>05315000</kenza>" + group("pers", person) + "</anfrage>");
}

inline std::string notification(const std::string& card, const std::string& status) {
  return message("zkr-mitteilung", group("satz", {{"stmit", "05315000"},
                                                  {"kgknr", card},
                                                  {"scode", status},
                                                  {"stime", "093015"},
                                                  {"sdate", "20141117"},
                                                  {"stext", "im Zug"}}));
}

inline std::string cancellation(const std::string& card) {
  return message("orderCancellation", group("body", {{"cardNumber", card}}));
}

/// An order; `changes` take the place of good values.
inline std::string order(const std::string& mark, const Values& changes = {}) {
  Values values = changes;
  values.insert({{"externalAdministrationMark", mark},
                 {"priority", "S"},
                 {"postalDeliveryType", "S"},
                 {"cardIssuingMemberState", "D"},
                 {"cardHolderBirthDate", "19851122"},
                 {"cardHolderSurnameRegister", "&#272;or&#273;evi&#263;"},
                 {"photograph", "/9j/4AAQ"},
                 {"signature", "/9j/2wBD\nAA=="}});
  for (const char* const name : {"version",
                                 "externalVersion",
                                 "userName",
                                 "reason",
                                 "chargeAttribute",
                                 "cardIssuingAuthorityName",
                                 "nameOfAuthorityAndAddress",
                                 "cardHolderGender",
                                 "cardHolderSurname",
                                 "cardHolderFirstNames",
                                 "cardHolderBirthplace",
                                 "cardHolderPreferredLanguage",
                                 "cardHolderPostcode",
                                 "cardHolderCity",
                                 "drivingLicenceNumber",
                                 "drivingLicenceIssuingAuthority",
                                 "drivingLicenceIssuingNation",
                                 "cardIssuingAuthorityKey",
                                 "cardHolderFirstNamesRegister",
                                 "cardHolderBirthNameRegister"}) {
    values.insert({name, "1"});
  }
  return message("driverCard", group("card", values));
}

}  // namespace kartix::test
