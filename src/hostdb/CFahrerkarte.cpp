#include "kartix/CFahrerkarte.h"

#include <algorithm>
#include <array>

#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"
#include "kartix/DBETXTDatabase.h"
#include "platform/Clock.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

struct StatusText {
  int code;
  std::string_view text;
};

constexpr std::array statusTexts = {
    StatusText{1, "Bestellung angenommen"},
    StatusText{2, "Karte ist produziert"},
    StatusText{3, "Karte versandt (gültig)"},
    StatusText{4, "Karte ersetzt"},
    StatusText{5, "Karte erneuert"},
    StatusText{6, "Karte entzogen"},
    StatusText{7, "Gültigkeit abgelaufen"},
    StatusText{8, "Karte freiwillig zurückgegeben"},
    StatusText{9, "Karte vorübergehend eingezogen"},
    StatusText{10, "Karte verloren"},
    StatusText{11, "Karte gestohlen"},
    StatusText{12, "Umtausch einer deutschen Fahrerkarte in einem andern EU-MS eingeleitet"},
    StatusText{13, "Umtausch einer deutschen Fahrerkarte in einem anderen EU-MS ist erfolgt"},
    StatusText{14, "Karte beschlagnahmt"},
    StatusText{15, "Karte unbrauchbar"},
    StatusText{16, "Karte wg. unberechtigter Nutzung gesucht (zur Fahndung ausgeschrieben)"},
    StatusText{17, "Kartenangaben fehlerhaft, neue Karte bestellt"},
    StatusText{71, "Gültigkeit der Karte läuft ab, neue Kontrollgerätkarte ist im Umlauf"},
    StatusText{81, "Karte verloren, neue Kontrollgerätkarte ist im Umlauf"},
    StatusText{82, "Karte gestohlen, neue Kontrollgerätkarte ist im Umlauf"},
    StatusText{91, "Karte unbrauchbar, neue Kontrollgerätkarte ist im Umlauf"},
    StatusText{101, "Bestellung storniert"},
};

/// Width of the text columns of a processing record.
constexpr std::size_t columnWidth = 66;

}  // namespace

CFahrerkarte::CFahrerkarte(Runtime& runtime) : runtime_(&runtime) {}

void CFahrerkarte::setAbgabestatus(std::string_view value) {
  if (value.size() == 1 && value.front() >= '1' && value.front() <= '5') return;
  abgabestatus_ = value;
}

std::string CFahrerkarte::scodetxt() const {
  const double code = leadingNumber(scode);
  const auto* const found = std::find_if(statusTexts.begin(), statusTexts.end(),
                                         [&](const StatusText& status) { return status.code == code; });
  return std::string(found == statusTexts.end() ? "Unbekannter Statuscode" : found->text);
}

std::string CFahrerkarte::zkrstatus() const { return scode + " - " + scodetxt(); }

std::string CFahrerkarte::CardKeyText() const {
  for (const std::string& date : {text::trim(gueltigab), text::trim(gueltigbis)}) {
    if (text::length(date) == noDate.size()) return "120000000:FAHRERKARTE" + date;
  }
  return "120000000:FAHRERKARTE" + std::string(noDate);
}

bool CFahrerkarte::insert(const std::string& spersonennummer) {
  return guarded(*runtime_, "CFahrerkarte::insert", false, [&] { return writeNew(spersonennummer); });
}

bool CFahrerkarte::update(const std::string& skartennr, const std::string& spersonennummer) {
  return guarded(*runtime_, "CFahrerkarte::update", false, [&] { return writeChanges(skartennr, spersonennummer); });
}

bool CFahrerkarte::writeNew(const std::string& spersonennummer) const {
  if (!isPersonNumber(spersonennummer)) return false;
  auto database = Own::of<DBETXTDatabase>(*runtime_);
  if (!openConfigured(*runtime_, database)) return false;

  const auto add = [&](std::string_view value, int times = 1) {
    for (; times > 0; --times) database.addDatafield(std::string(value));
  };
  const platform::LocalTime now = runtime_->machine.clock.now();
  add(spersonennummer);
  add(" ");
  add(moment::yyyymmdd(now));
  add(noDate);
  add(" ", 2);
  add(BlankIfEmpty(gueltigab));
  add(BlankIfEmpty(gueltigbis));
  add(noDate, 7);
  add(kartennr);
  add(text::left("Aussteller: " + stbab + " - " + babtx, columnWidth));
  add(text::left("Letzte Meldung: " + scode + " - " + scodetxt(), columnWidth));
  add(text::left("am " + runtime_->global.datum(sdate, false) + " von " + stmit + " - " + mittx, columnWidth));
  add(" ", 11);
  add("00000");
  add("0", 3);
  add(" ");
  add("101");
  add(noDate);
  add(moment::stamp(now));
  add(runtime_->ClerkName);
  add(CardKeyText());
  add(" ");
  if (database.addDataset("BEARBEITUNG", true) != 0) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, kfsnr, "Übernahme kompletter ZKR-Datensatz Nr. " + kartennr);
  return true;
}

bool CFahrerkarte::writeChanges(const std::string& skartennr, const std::string& spersonennummer) const {
  std::string statement = "update bearbeitung set ";
  statement += assignment("sonst1 = ", kartennr);
  statement += assignment("datum01 = ", antragsdatum);
  statement += assignment("datum02 = ", gueltigab);
  statement += assignment("datum03 = ", gueltigbis);
  statement += assignment("datum04 = ", bestelldatum);
  statement += assignment("datum05 = ", ausdatum);
  if (!statement.ends_with(',') || !isPersonNumber(spersonennummer)) return false;
  statement.pop_back();
  statement +=
      " where sonst1 = '" + text::replaceAll(skartennr, "'", "''") + "' and personennummer = " + spersonennummer;

  auto database = Own::of<DBETXTDatabase>(*runtime_);
  if (!openConfigured(*runtime_, database)) return false;
  if (database.executeSQL(statement, true) != 0) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, " ",
                   "Aktualisierung Fahrerkarte Nr. " + skartennr + " aus ZKR");
  return true;
}

}  // namespace kartix
