#include "simulator/PersonaliserService.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "simulator/Answers.h"

namespace kartix::simulator {
namespace {

/// What an element of an order must hold.
struct Rule {
  enum class Content { any, text, date, base64 };

  std::string_view element;
  Content content = Content::text;
  std::string_view choices = {};  ///< the only values, each with "|" at both sides; empty for any
};

using Content = Rule::Content;

constexpr std::array orderRules = {
    Rule{"version"},
    Rule{"externalVersion"},
    Rule{"externalAdministrationMark"},
    Rule{"userName"},
    Rule{"reason", Content::any, "||1|2|3|"},
    Rule{"chargeAttribute", Content::text, "|0|1|"},
    Rule{"priority", Content::text, "|E|S|"},
    Rule{"postalDeliveryType", Content::text, "|S|Z|"},
    Rule{"cardIssuingMemberState", Content::text, "|D|TST|"},
    Rule{"cardIssuingAuthorityName", Content::any},
    Rule{"nameOfAuthorityAndAddress", Content::any},
    Rule{"cardHolderGender", Content::text, "|0|1|2|"},
    Rule{"cardHolderSurname"},
    Rule{"cardHolderFirstNames"},
    Rule{"cardHolderBirthDate", Content::date},
    Rule{"cardHolderBirthplace", Content::any},
    Rule{"cardHolderPreferredLanguage", Content::any},
    Rule{"cardHolderPostcode", Content::any},
    Rule{"cardHolderCity", Content::any},
    Rule{"drivingLicenceNumber"},
    Rule{"drivingLicenceIssuingAuthority", Content::any},
    Rule{"drivingLicenceIssuingNation", Content::any},
    Rule{"cardIssuingAuthorityKey"},
    Rule{"cardHolderFirstNamesRegister"},
    Rule{"cardHolderBirthNameRegister", Content::any},
    Rule{"cardHolderSurnameRegister"},
    Rule{"photograph", Content::base64},
    Rule{"signature", Content::base64},
};

/// Values of the register's record and the elements of an order that they come from.
constexpr std::array<std::pair<const char*, const char*>, 20> recordSources = {{
    {"stmit", "cardIssuingAuthorityKey"},
    {"mittx", "cardIssuingAuthorityName"},
    {"stbab", "cardIssuingAuthorityKey"},
    {"babtx", "cardIssuingAuthorityName"},
    {"fsnfk", "drivingLicenceNumber"},
    {"natas", "drivingLicenceIssuingNation"},
    {"anr", "cardHolderGender"},
    {"drgrd", "cardHolderTitle"},
    {"vname", "cardHolderFirstNamesRegister"},
    {"gnamb", "cardHolderBirthNamePartsRegister"},
    {"gname", "cardHolderBirthNameRegister"},
    {"fnamb", "cardHolderSurnamePartsRegister"},
    {"name", "cardHolderSurnameRegister"},
    {"dgebu", "cardHolderBirthDate"},
    {"gort", "cardHolderBirthplace"},
    {"stras", "cardHolderStreet"},
    {"hsnr", "cardHolderStreetNo"},
    {"hnz15", "cardHolderStreetNoAddOn"},
    {"plz08", "cardHolderPostcode"},
    {"wohno", "cardHolderCity"},
}};

/// Base64 text, line breaks allowed; an empty one is none.
bool isBase64(std::string_view text) {
  std::size_t characters = 0;
  std::size_t padding = 0;
  for (const char c : text) {
    if (c == '\r' || c == '\n' || c == ' ' || c == '\t') continue;
    const bool letter =
        (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
    if (c == '=') {
      ++padding;
    } else if (!letter || padding > 0) {
      return false;
    }
    ++characters;
  }
  return characters > 0 && characters % 4 == 0 && padding <= 2;
}

bool holds(const Element& element, const Rule& rule) {
  constexpr std::size_t longest = 500;
  constexpr std::size_t dateLength = 8;
  if (rule.content == Content::base64) return isBase64(element.text);
  const std::string value = element.content();
  if (text::length(value) > longest) return false;
  if (rule.content == Content::text && value.empty()) return false;
  if (rule.content == Content::date && (value.size() != dateLength || !text::allDigits(value))) return false;
  return rule.choices.empty() || rule.choices.find("|" + value + "|") != std::string_view::npos;
}

std::vector<Fault> faultsOf(const Element& request) {
  std::vector<Fault> faults;
  for (const Rule& rule : orderRules) {
    const std::string name(rule.element);
    const Element* const element = request.find(name);
    if (!element) {
      faults.push_back({"P100", "Das Element " + name + " fehlt."});
    } else if (!holds(*element, rule)) {
      faults.push_back({"P200", "Das Element " + name + " ist leer oder ungültig."});
    }
  }
  return faults;
}

/// The next free card number.
std::string takeNumber(Books& books) {
  for (;;) {
    std::array<char, 32> number{};
    std::snprintf(number.data(), number.size(), "DF00%010u00", 80'000'000 + books.nextSerial++);
    if (!books.cards.contains(number.data())) return number.data();
  }
}

void setStatus(CardRecord& record, std::string_view status, const platform::LocalTime& now) {
  const std::string stamp = moment::stamp(now);
  record["scode"] = status;
  record["sdate"] = stamp.substr(0, 8);
  record["stime"] = stamp.substr(8, 6);
}

}  // namespace

Element answerOrder(Ledger& ledger, const Element& request, const platform::LocalTime& now) {
  constexpr std::size_t mostOrders = 10'000;
  const std::vector<Fault> faults = faultsOf(request);
  if (!faults.empty()) return information(return_code::incomplete, "Die Bestellung ist fehlerhaft.", faults);
  Books next = ledger.books();
  if (next.orders.size() >= mostOrders) return information(return_code::notPossible, "Das Auftragsbuch ist voll.");
  const std::string number = takeNumber(next);
  CardRecord& record = next.cards[number];
  record["kgknr"] = number;
  for (const auto& [element, source] : recordSources) record[element] = request.value(source);
  setStatus(record, "01", now);
  next.orders.push_back({request.value("externalAdministrationMark"), number, moment::yyyymmdd(now), false});
  if (!ledger.commit(std::move(next))) return information(return_code::cannotBeKept, cannotBeKeptText);
  return orderAccepted(number);
}

Element answerCancellation(Ledger& ledger, const Element& request, const platform::LocalTime& now) {
  const std::string number = request.value("cardNumber");
  Books next = ledger.books();
  const auto card = next.cards.find(number);
  if (card == next.cards.end()) {
    return information(return_code::cardUnknown, "Unter der Kartennummer ist keine Bestellung bekannt.");
  }
  const int status = leadingInt32(valueOf(card->second, "scode"));
  if (status == card_status::cancelled)
    return information(return_code::notPossible, "Die Bestellung ist schon storniert.");
  if (status != card_status::ordered) {
    return information(return_code::notPossible, "Die Karte ist schon produziert.");
  }
  setStatus(card->second, "101", now);
  const auto order = std::find_if(next.orders.begin(), next.orders.end(),
                                  [&](const Order& known) { return known.cardNumber == number; });
  if (order != next.orders.end()) order->cancelled = true;
  if (!ledger.commit(std::move(next))) return information(return_code::cannotBeKept, cannotBeKeptText);
  return information(0, "Bestellung storniert");
}

}  // namespace kartix::simulator
