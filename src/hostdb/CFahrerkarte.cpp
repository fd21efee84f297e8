#include "kartix/CFahrerkarte.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

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

/// True when there is a processing record of the person `values[0]` with all of `values`.
bool standsInBearbeitung(DBETXTDatabase& database, const std::vector<std::string>& values) {
  std::string row = "select * from bearbeitung where personennummer = " + values.front();
  std::string cursor;
  for (std::int32_t left = database.query(row, cursor); left > 0; left = database.queryNext(row, cursor)) {
    std::size_t same = 1;
    while (same < values.size() &&
           database.Datafield(static_cast<std::int16_t>(same + 1)) == text::trim(values[same])) {
      ++same;
    }
    if (same == values.size()) return true;
  }
  return false;
}

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

  std::vector<std::string> values;
  const auto add = [&](std::string_view value, int times = 1) {
    values.insert(values.end(), times, std::string(value));
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
  for (const std::string& value : values) database.addDatafield(value);
  const std::int16_t result = database.addDataset("BEARBEITUNG", true);
  const auto stands = [&] { return standsInBearbeitung(database, values); };
  if (!wasWritten(*runtime_, result, "Fahrerkarte Nr. " + kartennr, stands)) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, kfsnr, "Übernahme kompletter ZKR-Datensatz Nr. " + kartennr);
  return true;
}

bool CFahrerkarte::writeChanges(const std::string& skartennr, const std::string& spersonennummer) const {
  Assignments columns;
  columns.add("sonst1 = ", kartennr);
  columns.add("datum01 = ", antragsdatum);
  columns.add("datum02 = ", gueltigab);
  columns.add("datum03 = ", gueltigbis);
  columns.add("datum04 = ", bestelldatum);
  columns.add("datum05 = ", ausdatum);
  if (columns.empty() || !isPersonNumber(spersonennummer)) return false;
  const std::string old = "sonst1 = '" + text::replaceAll(skartennr, "'", "''") + "'";
  const std::string person = "personennummer = " + spersonennummer;

  auto database = Own::of<DBETXTDatabase>(*runtime_);
  if (!openConfigured(*runtime_, database)) return false;
  const std::int16_t result =
      database.executeSQL("update bearbeitung set " + columns.list() + " where " + old + " and " + person, true);
  const auto stands = [&] {
    std::string where = "bearbeitung where " + person + " and " + columns.condition();
    if (kartennr.empty()) where += " and " + old;
    return thereIs(database, where);
  };
  if (!wasWritten(*runtime_, result, "Fahrerkarte Nr. " + skartennr, stands)) return false;
  writeExchangeLog(*runtime_, database, spersonennummer, " ",
                   "Aktualisierung Fahrerkarte Nr. " + skartennr + " aus ZKR");
  return true;
}

}  // namespace kartix
