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
void addFirstNames(Assignments& columns, const std::string& vornamen) {
  if (vornamen.empty()) return;
  const auto blank = vornamen.find(' ');
  const bool one = blank == std::string::npos;
  const std::string first = one ? vornamen : BlankIfEmpty(text::trim(vornamen.substr(0, blank)));
  const std::string rest = one ? " " : BlankIfEmpty(text::trim(vornamen.substr(blank + 1)));
  columns.add("vorname=", first);
  columns.add("weiterevornamen=", rest);
  columns.add("vornamekomplett=", one ? first : first + " " + rest);
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
  Assignments columns;
  columns.add("familienname=", familienname);
  columns.add("geburtsname=", geburtsname);
  addFirstNames(columns, vornamen);
  columns.add("geburtsdatum=", geburtsdatum);
  columns.add("geburtsort=", geburtsort);
  columns.add("titel=", titel);
  columns.add("zusatzf=", zusatzf);
  columns.add("zusatzg=", zusatzg);
  columns.add("anrede=", anrede_);
  columns.add("strasse=", strasse);
  columns.add("plz=", plz);
  columns.add("wohnort=", wohnort);
  if (columns.empty() || !isPersonNumber(spersonennummer)) return false;
  const std::string person = " where personennummer = " + spersonennummer;

  auto database = Own::of<DBETXTDatabase>(*runtime_);
  if (!openConfigured(*runtime_, database)) return false;
  const std::int16_t result = database.executeSQL("update personalien set " + columns.list() + person, true);
  const auto stands = [&] { return thereIs(database, "personalien" + person + " and " + columns.condition()); };
  if (!wasWritten(*runtime_, result, "Personalien " + spersonennummer, stands)) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, " ", "Aktualisierung Personalien aus ZKR nach ARGO");
  return true;
}

}  // namespace kartix
