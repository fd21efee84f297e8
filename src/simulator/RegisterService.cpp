#include "simulator/RegisterService.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "simulator/Answers.h"

namespace kartix::simulator {
namespace {

constexpr std::array personCriteria = {"vname", "gnamb", "gname", "fnamb", "name", "dgebu", "gort"};

struct Criterion {
  std::string element;
  std::string value;
};

/// What the records are searched by: the first of card number, licence number and person data that is given.
std::vector<Criterion> criteriaOf(const Element& request) {
  for (const char* const name : {"kgknr", "fsnfk"}) {
    if (const std::string value = request.value(name); !value.empty()) return {{name, value}};
  }
  std::vector<Criterion> criteria;
  for (const char* const name : personCriteria) {
    const std::string value = request.value(name);
    if (!value.empty() && value != noDate) criteria.push_back({name, value});
  }
  return criteria;
}

std::vector<const CardRecord*> search(const Books& books, const std::vector<Criterion>& criteria) {
  std::vector<const CardRecord*> hits;
  for (const auto& [number, record] : books.cards) {
    const bool hit = std::all_of(criteria.begin(), criteria.end(), [&, &values = record](const Criterion& criterion) {
      return text::equalNoCase(criterion.value, valueOf(values, criterion.element));
    });
    if (hit) hits.push_back(&record);
  }
  return hits;
}

bool isSearchable(const Element& request) {
  constexpr std::array sufficient = {"kgknr", "fsnfk", "name", "gname"};
  return std::any_of(sufficient.begin(), sufficient.end(),
                     [&](const char* name) { return !request.value(name).empty(); });
}

Element makeHead() { return {"kopf", "", {{"vers", "1.1"}, {"exver", "1.1.0"}, {"retc", "0"}}}; }

Element singleRecord(const CardRecord& record) {
  Element data{"bestandsdaten"};
  for (const char* const name : recordElements) {
    const std::string value = valueOf(record, name);
    if (!value.empty()) data.children.push_back({name, value});
  }
  return {"zkr-auskunft", "", {makeHead(), {"auskunft", "", {std::move(data)}}}};
}

Element hitList(const std::vector<const CardRecord*>& hits) {
  constexpr std::array columns = {"kgknr", "dguab", "fsnfk", "fnamb", "name", "vname", "plz08", "wohno"};
  Element list{"liste"};
  for (const CardRecord* const record : hits) {
    Element hit{"listelem"};
    for (const char* const name : columns) {
      const std::string value = valueOf(*record, name);
      if (!value.empty()) hit.children.push_back({name, value});
    }
    list.children.push_back(std::move(hit));
  }
  return {"zkr-trefferliste", "", {makeHead(), std::move(list)}};
}

bool isReportable(int status) {
  constexpr std::array reportable = {3, 6, 8, 9, 10, 11, 14, 15, 16};
  return std::find(reportable.begin(), reportable.end(), status) != reportable.end();
}

/// What is wrong with a notification by itself.
std::vector<Fault> faultsOf(const Element& request) {
  constexpr std::size_t longestText = 500;
  std::vector<Fault> faults;
  const auto digits = [&](const char* name, std::size_t count) {
    const std::string value = request.value(name);
    return value.size() == count && text::allDigits(value);
  };
  if (!digits("sdate", 8)) faults.push_back({"M011", "Das Datum der Statusänderung (sdate) ist ungültig."});
  if (!digits("stime", 6)) faults.push_back({"M012", "Die Uhrzeit der Statusänderung (stime) ist ungültig."});
  if (!isReportable(leadingInt32(request.value("scode")))) {
    faults.push_back({"M013", "Der Status (scode) kann nicht gemeldet werden."});
  }
  if (request.value("stmit").empty() || request.value("stmit").size() > longestText) {
    faults.push_back({"M014", "Die mitteilende Stelle (stmit) fehlt oder ist zu lang."});
  }
  if (text::length(request.value("stext")) > longestText) {
    faults.push_back({"M015", "Der Text (stext) ist zu lang."});
  }
  return faults;
}

void report(CardRecord& record, const Element& request) {
  for (const char* const name : {"scode", "sdate", "stime", "stext", "stmit"}) record[name] = request.value(name);
  record["mittx"] = valueOf(record, "stmit") == valueOf(record, "stbab") ? valueOf(record, "babtx") : "";
  const bool lost = leadingInt32(record["scode"]) == card_status::lost;
  record["dhwkk"] = lost ? record["sdate"] : "";
}

}  // namespace

Element countedHits(const Element& request, std::size_t hits) {
  Element criteria{"anfrage"};
  for (const char* const name : {"kenza", "sbk25", "kgknr", "fsnfk"}) {
    if (request.find(name)) criteria.children.push_back({name, request.value(name)});
  }
  if (request.find("pers")) {
    Element person{"pers"};
    for (const char* const name : personCriteria) person.children.push_back({name, request.value(name)});
    criteria.children.push_back(std::move(person));
  }
  Element head = makeHead();
  head.children.back().text = std::to_string(return_code::count);
  head.children.push_back({"rett", hits == 0 ? "Kein Treffer" : "Zu viele Treffer"});
  head.children.push_back({"anzt", std::to_string(hits)});
  return {"zkr-anfrage", "", {std::move(head), std::move(criteria)}};
}

Element answerInquiry(const Books& books, const Element& request) {
  if (!isSearchable(request)) return inquiryHint(return_code::incomplete, "Die Suchkriterien reichen nicht aus.");
  const std::vector<const CardRecord*> hits = search(books, criteriaOf(request));
  if (hits.size() == 1) return singleRecord(*hits.front());
  if (hits.empty() || hits.size() > mostListedHits) return countedHits(request, hits.size());
  return hitList(hits);
}

Element answerNotification(Ledger& ledger, const Element& request) {
  const std::vector<Fault> faults = faultsOf(request);
  if (!faults.empty()) {
    return notificationErrors(request, return_code::incomplete, "Die Mitteilung ist fehlerhaft.", faults);
  }
  Books next = ledger.books();
  const auto card = next.cards.find(request.value("kgknr"));
  if (card == next.cards.end()) return notificationHint(return_code::cardUnknown, "Die Karte ist nicht bekannt.");
  if (leadingInt32(valueOf(card->second, "scode")) == card_status::cancelled) {
    return notificationHint(return_code::notPossible, "Die Bestellung der Karte ist storniert.");
  }
  report(card->second, request);
  if (!ledger.commit(std::move(next))) return notificationHint(return_code::cannotBeKept, cannotBeKeptText);
  return notificationHint(0, "Die Mitteilung wurde verarbeitet.");
}

}  // namespace kartix::simulator
