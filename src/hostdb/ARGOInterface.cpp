#include "hostdb/ARGOInterface.h"

#include <algorithm>

#include "common/Text.h"
#include "hostdb/Fahrerkarten.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Own.h"
#include "hostdb/Session.h"
#include "kartix/DBETXTDatabase.h"
#include "runtime/Runtime.h"

namespace kartix {

void ARGOInterface::init() {
  runtime_.trace.TraceEnter("ARGOInterface::init");
  runtime_.trace.TraceLeave("ARGOInterface::init");
}

bool ARGOInterface::Load() {
  return load("ARGOInterface::Load",
              {&ARGOInterface::LoadPerson, &ARGOInterface::loadAktKartennr, &ARGOInterface::LoadFahrerkarte});
}

bool ARGOInterface::LoadForOrder() {
  return load("ARGOInterface::Load", {&ARGOInterface::LoadPerson, &ARGOInterface::LoadOperationCard});
}

bool ARGOInterface::LoadMitteilung() {
  return load("ARGOInterface::LoadMitteilung", {&ARGOInterface::LoadOperationCard});
}

bool ARGOInterface::load(std::string_view traceName, std::initializer_list<Step> steps) {
  runtime_.trace.TraceEnter(traceName);
  bool loaded = false;
  {
    auto db = Own::of<DBETXTDatabase>(runtime_);
    if (!openConfigured(runtime_, db)) {
      runtime_.reporting.ReportError(1000);
    } else {
      loaded = std::all_of(steps.begin(), steps.end(), [&](Step step) { return (this->*step)(db); });
    }
  }
  runtime_.trace.TraceLeave(traceName, loaded);
  return loaded;
}

std::string ARGOInterface::value(const std::string& row, int column) {
  return runtime_.global.GetSqlValue(row, static_cast<std::int16_t>(column));
}

bool ARGOInterface::checkPersonNumber() {
  if (isPersonNumber(session_.CurrentPerson.personennummer)) return true;
  runtime_.reporting.ReportError(1001);
  return false;
}

bool ARGOInterface::LoadPerson(DBETXTDatabase& db) {
  if (!checkPersonNumber()) return false;
  CPersonalien& person = session_.CurrentPerson;
  std::string row = "select * from personalien where personennummer = " + person.personennummer;
  std::string cursor;
  const std::int32_t count = db.query(row, cursor);
  db.closeCursor(cursor);
  if (count != 1) {
    runtime_.reporting.ReportError(count <= 0 ? 1001 : 1002);
    return false;
  }
  person.geburtsname = value(row, 2);
  person.familienname = value(row, 3);
  person.geburtsdatum = value(row, 6);
  person.geburtsort = value(row, 7);
  person.plz = value(row, 8);
  person.wohnort = value(row, 9);
  person.strasse = value(row, 10);
  person.setAnrede(value(row, 38));
  person.titel = value(row, 40);
  person.zusatzg = value(row, 86);
  person.zusatzf = value(row, 87);
  person.vhkgebdat = runtime_.global.datum(value(row, 127), true);
  person.fernr = value(row, 129);
  person.vornamen = value(row, 167);
  person.fsnr = value(row, 177);
  return true;
}

bool ARGOInterface::queryOperationRecord(DBETXTDatabase& db, std::string& row) {
  if (!checkPersonNumber()) return false;
  row = "select * from fahrerkarte where personennummer = " + session_.CurrentPerson.personennummer +
        " and lfdnr = '" + text::replaceAll(session_.CurrentLfdnr, "'", "''") + "'";
  std::string cursor;
  const std::int32_t count = db.query(row, cursor);
  if (count >= 0) db.closeCursor(cursor);
  if (count == 1) return true;
  runtime_.reporting.ReportError(count < 0 ? 1003 : count == 0 ? 1004 : 1005);
  return false;
}

bool ARGOInterface::loadAktKartennr(DBETXTDatabase& db) {
  runtime_.trace.TraceEnter("ARGOInterface::loadAktKartennr");
  session_.AktKartennr.clear();
  std::string row;
  const bool loaded = queryOperationRecord(db, row);
  if (loaded) session_.AktKartennr = value(row, 5);
  runtime_.trace.TraceLeave("ARGOInterface::loadAktKartennr", loaded);
  return loaded;
}

bool ARGOInterface::LoadFahrerkarte(DBETXTDatabase& db) {
  runtime_.trace.TraceEnter("ARGOInterface::LoadFahrerkarte");
  std::string row = "select * from fahrerkarte where personennummer = " + session_.CurrentPerson.personennummer +
                    " and vorgangschl not in ('ST','U')";
  std::string cursor;
  const std::int32_t count = db.query(row, cursor);
  // A list that could not be read is not an empty one.
  if (count < 0) {
    runtime_.reporting.ReportError(1003);
    runtime_.trace.TraceLeave("ARGOInterface::LoadFahrerkarte", false);
    return false;
  }
  Fahrerkarten cards(runtime_, session_);
  cards.expect(static_cast<std::size_t>(count));
  std::int32_t read = 0;
  while (read < count) {
    const std::string antragsdatum = value(row, 9);
    const std::string ausdatum = value(row, 20);
    const std::string bestelldatum = value(row, 10);
    const std::string gueltigab = value(row, 15);
    const std::string gueltigbis = value(row, 16);
    const std::string kartennr = value(row, 5);
    const std::string kartennralt = value(row, 6);
    cards.addARGO(antragsdatum, ausdatum, bestelldatum, gueltigab, gueltigbis, kartennr, kartennralt);
    ++read;
    if (db.queryNext(row, cursor) < 1) break;
  }
  runtime_.trace.TraceLine("gelesen: " + std::to_string(read), trace_level::counts);
  db.closeCursor(cursor);
  runtime_.trace.TraceLeave("ARGOInterface::LoadFahrerkarte", true);
  return true;
}

bool ARGOInterface::LoadOperationCard(DBETXTDatabase& db) {
  std::string row;
  if (!queryOperationRecord(db, row)) return false;
  CFahrerkarte& card = session_.OperationCard;
  card.lfdnr = value(row, 1);
  card.vorgangschl = value(row, 3);
  card.kartennr = value(row, 5);
  card.kartennralt = value(row, 6);
  card.kfsstaat = value(row, 13);
  card.kfsnr = value(row, 14);
  card.karteam = value(row, 17);
  card.kartestatus = value(row, 18);
  card.ausdatum = value(row, 20);
  card.setAbgabestatus(value(row, 22));
  card.stext = value(row, 26);
  card.familienname = value(row, 27);
  card.sprache = value(row, 29);
  card.changedate = value(row, 32);
  card.fsverwaltung = value(row, 36);
  card.vornamen = value(row, 37);
  return true;
}

}  // namespace kartix
