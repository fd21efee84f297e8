#include "simulator/SampleBooks.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "common/Text.h"
#include "simulator/Accounts.h"
#include "simulator/SamplePersons.h"

namespace kartix::simulator {
namespace {

constexpr std::string_view digits = "0123456789";

/// Street, house number and what follows it.
void setAddress(CardRecord& record, std::string_view address) {
  record["stras"] = address;
  const auto last = address.find_last_of(digits);
  if (last == std::string_view::npos) return;
  const auto before = address.substr(0, last).find_last_not_of("0123456789-");
  if (before == std::string_view::npos) return;
  const std::string_view number = address.substr(before + 1);
  const auto addition = std::min(number.find_first_not_of(digits), number.size());
  record["stras"] = text::trim(address.substr(0, before + 1));
  record["hsnr"] = number.substr(0, addition);
  record["hnz15"] = text::trim(number.substr(addition));
}

void setHolder(CardRecord& record, const SamplePerson& person) {
  record["anr"] = person.anrede == "Herr" ? "1" : "2";
  record["drgrd"] = person.titel;
  record["vname"] = person.vornamen;
  record["gnamb"] = person.zusatzg;
  record["gname"] = person.geburtsname;
  record["fnamb"] = person.zusatzf;
  record["name"] = person.familienname;
  record["dgebu"] = person.geburtsdatum;
  record["gort"] = person.geburtsort;
  record["plz08"] = person.plz;
  record["wohno"] = person.wohnort;
  setAddress(record, person.strasse);
}

CardRecord makeRecord(const SampleRegisterCard& card, const SamplePerson& person) {
  CardRecord record = {{"kgknr", std::string(card.kgknr)},
                       {"daukk", std::string(card.daukk)},
                       {"stmit", std::string(sampleAuthorityKey)},
                       {"mittx", std::string(sampleAuthorityName)},
                       {"stbab", std::string(sampleAuthorityKey)},
                       {"babtx", std::string(sampleAuthorityName)},
                       {"ckenn", std::string(card.ckenn)},
                       {"fsnfk", std::string(card.fsnfk)},
                       {"natas", "D"},
                       {"scode", std::string(card.scode)},
                       {"sdate", std::string(card.sdate)},
                       {"stime", "080000"},
                       {"dgubg", std::string(card.dgubg)},
                       {"dguab", std::string(card.dguab)}};
  setHolder(record, person);
  return record;
}

std::string numbered(const char* format, unsigned number) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, number);
  return text.data();
}

/// A name that is too common to be searched for alone.
void addNamesakes(Books& books) {
  constexpr std::array<std::string_view, 19> firstNames = {
      "Andreas", "Bernd",  "Christian", "Dieter", "Erwin", "Frank", "Gerd",   "Hans", "Ingo",  "Jürgen",
      "Karl",    "Lothar", "Michael",   "Peter",  "Ralf",  "Sönke", "Thomas", "Uwe",  "Walter"};
  constexpr std::array<std::string_view, 3> places = {"Köln", "München", "Lübeck"};
  unsigned serial = 0;
  for (const std::string_view place : places) {
    for (const std::string_view firstName : firstNames) {
      ++serial;
      const std::string number = numbered("DF000009000%03u00", serial);
      const std::string birth = numbered("19%02u0615", 40 + serial % 50);
      const std::string licence = numbered("M000M%06u", serial);
      const SamplePerson person{.personennummer = {},
                                .anrede = "Herr",
                                .vornamen = firstName,
                                .familienname = "Müller",
                                .geburtsname = "Müller",
                                .geburtsdatum = birth,
                                .geburtsort = place,
                                .strasse = "Hauptstraße 1",
                                .wohnort = place};
      books.cards[number] = makeRecord({.personennummer = {},
                                        .kgknr = number,
                                        .fsnfk = licence,
                                        .scode = "03",
                                        .sdate = "20240301",
                                        .daukk = "20240223",
                                        .dgubg = "20240301",
                                        .dguab = "20290228"},
                                       person);
    }
  }
}

}  // namespace

Books sampleBooks() {
  Books books;
  for (const SampleAccount& account : sampleAccounts) {
    books.accounts[std::string(account.user)] = {std::string(samplePassword), account.code};
  }
  for (const SampleRegisterCard& card : sampleRegisterCards()) {
    const auto persons = samplePersons();
    const auto holder = std::find_if(persons.begin(), persons.end(), [&](const SamplePerson& person) {
      return person.personennummer == card.personennummer;
    });
    books.cards[std::string(card.kgknr)] = makeRecord(card, *holder);
  }
  addNamesakes(books);
  return books;
}

}  // namespace kartix::simulator
