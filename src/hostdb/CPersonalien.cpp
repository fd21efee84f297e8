#include "kartix/CPersonalien.h"

#include "common/Text.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"
#include "kartix/DBETXTDatabase.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// The three columns that hold the first names.
std::string firstNames(const std::string& vornamen) {
  if (vornamen.empty()) return {};
  const auto blank = vornamen.find(' ');
  if (blank == std::string::npos) {
    return assignment("vorname=", vornamen) + assignment("weiterevornamen=", " ") +
           assignment("vornamekomplett=", vornamen);
  }
  const std::string first = BlankIfEmpty(text::trim(vornamen.substr(0, blank)));
  const std::string rest = BlankIfEmpty(text::trim(vornamen.substr(blank + 1)));
  return assignment("vorname=", first) + assignment("weiterevornamen=", rest) +
         assignment("vornamekomplett=", first + " " + rest);
}

}  // namespace

CPersonalien::CPersonalien(Runtime& runtime) : runtime_(&runtime) {}

void CPersonalien::setAnrede(std::string_view value) {
  if (value == "Herr" || value == "1") {
    anrede_ = "Herr";
  } else if (value == "Frau" || value == "2") {
    anrede_ = "Frau";
  } else {
    anrede_.clear();
  }
}

std::string CPersonalien::kbaanrede() const {
  if (anrede_ == "Herr") return "1";
  return anrede_ == "Frau" ? "2" : "0";
}

bool CPersonalien::update(const std::string& spersonennummer) {
  return guarded(*runtime_, "CPersonalien::update", false, [&] { return writeChanges(spersonennummer); });
}

bool CPersonalien::writeChanges(const std::string& spersonennummer) const {
  std::string statement = "update personalien set ";
  statement += assignment("familienname=", familienname);
  statement += assignment("geburtsname=", geburtsname);
  statement += firstNames(vornamen);
  statement += assignment("geburtsdatum=", geburtsdatum);
  statement += assignment("geburtsort=", geburtsort);
  statement += assignment("titel=", titel);
  statement += assignment("zusatzf=", zusatzf);
  statement += assignment("zusatzg=", zusatzg);
  statement += assignment("anrede=", anrede_);
  statement += assignment("strasse=", strasse);
  statement += assignment("plz=", plz);
  statement += assignment("wohnort=", wohnort);
  if (!statement.ends_with(',') || !isPersonNumber(spersonennummer)) return false;
  statement.pop_back();
  statement += " where personennummer = " + spersonennummer;

  auto database = Own::of<DBETXTDatabase>(*runtime_);
  if (!openConfigured(*runtime_, database)) return false;
  if (database.executeSQL(statement, true) != 0) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, " ", "Aktualisierung Personalien aus ZKR nach ARGO");
  return true;
}

}  // namespace kartix
