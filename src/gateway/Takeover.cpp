#include "gateway/Takeover.h"

#include <array>
#include <map>
#include <string>
#include <string_view>

#include "common/Numbers.h"
#include "common/Text.h"
#include "common/Values.h"
#include "gateway/KBAInterface.h"
#include "gateway/RegisterRecord.h"
#include "hostdb/Session.h"
#include "platform/ObjectClasses.h"
#include "platform/XmlLibrary.h"

namespace kartix {
namespace {

constexpr std::array<RecordValue, 25> values = {{
    {"kgknr", "GetKartennummer", true},
    {"daukk", "GetDatumAusstellung", true},
    {"stmit", "GetMitteilendeStelle"},
    {"mittx", "GetMitteilendeStelleText"},
    {"stbab", "GetAusstellendeBehoerde"},
    {"babtx", "GetAusstellendeBehoerdeText"},
    {"ckenn", "GetChipkartenId"},
    {"fsnfk", "GetFuehrerscheinnummer", true},
    {"natas", "GetFuehrerscheinAusstellenderStaat", true},
    {"scode", "GetStatus"},
    {"sdate", "GetDatumAenderungStatus"},
    {"stime", "GetZeitAenderungStatus"},
    {"stext", "GetKlartextStatus"},
    {"dhwkk", "GetDatumVerlustKarte"},
    {"dgubg", "GetDatumBeginnGueltigkeit"},
    {"dguab", "GetDatumAblaufGueltigkeit", true},
    {"anr", "GetAnrede"},
    {"drgrd", "GetDoktorgrad"},
    {"vname", "GetVornamen", true},
    {"gnamb", "GetNamensbestandteileGeburtsname", true},
    {"gname", "GetGeburtsname", true},
    {"fnamb", "GetNamensbestandteileFamilienname", true},
    {"name", "GetFamilienname", true},
    {"dgebu", "GetGeburtsdatum"},
    {"gort", "GetGeburtsort"},
}};

using Record = std::map<std::string_view, std::string>;

/// Hand-in state of a register status; empty when the status is none.
std::string_view handInState(std::int32_t status) {
  switch (status) {
    case 6:
      return "entzogen";
    case 8:
      return "freiwillig zurückgegeben";
    case 9:
      return "vorübergehend eingezogen";
    case 10:
    case 81:
      return "verloren";
    case 11:
    case 82:
      return "gestohlen";
    case 12:
    case 13:
      return "Umtausch im Ausland";
    case 14:
      return "beschlagnahmt";
    case 15:
    case 91:
      return "unbrauchbar";
    case 16:
      return "Sachfahndung";
    case 17:
      return "Kartenangaben falsch";
    case 71:
      return "Gültigkeit abgelaufen";
    default:
      return {};
  }
}

void applyStatus(CFahrerkarte& card) {
  constexpr std::int32_t lastOrderState = 5;
  const std::int32_t status = leadingInt32(card.scode);
  if (status >= 1 && status <= lastOrderState) {
    card.bestellstatus = card.scodetxt();
    card.bestellstatusam = card.sdate;
    return;
  }
  const std::string_view state = handInState(status);
  if (state.empty()) return;
  card.abgabedatum = card.sdate;
  card.setAbgabestatus(state);
}

/// Nothing of an earlier operation may remain: the fields that the register does not know are emptied.
void fill(CFahrerkarte& card, Record& record) {
  card.vorgangschl.clear();
  card.karteam.clear();
  card.kartestatus.clear();
  card.antragsdatum.clear();
  card.ausdatum.clear();
  card.babtx = record["babtx"];
  card.bestelldatum.clear();
  card.chipkennung = record["ckenn"];
  card.familienname = record["name"];
  card.fsverwaltung.clear();
  card.gueltigab = record["dgubg"];
  card.gueltigbis = record["dguab"];
  card.kartennr = text::trimSpace(record["kgknr"]);
  card.kartennralt.clear();
  card.kfsnr = record["fsnfk"];
  card.kfsstaat = record["natas"];
  card.mittx = record["mittx"];
  card.proddatum = record["daukk"];
  card.scode = text::trimSpace(record["scode"]);
  card.sdate = record["sdate"];
  card.sprache.clear();
  card.stbab = record["stbab"];
  card.stext = record["stext"];
  card.stmit = record["stmit"];
  card.vornamen = record["vname"];
  card.zkrdatum = record["sdate"];
  card.abgabedatum = " ";
  card.setAbgabestatus(" ");
  card.bestellstatus.clear();
  card.bestellstatusam.clear();
  applyStatus(card);
}

}  // namespace

std::span<const RecordValue> recordValues() { return values; }

void TakeOverBestandsdaten(Session& session, const platform::XmlDocument& answer) {
  Record record;
  for (const RecordValue& source : values) {
    record[source.element] = firstText(answer, "//bestandsdaten//" + std::string(source.element));
  }
  fill(session.ResultCard, record);
}

void TakeOverBestandsdatenCOM(Session& session, platform::AutomationObject& object) {
  Record record;
  for (const RecordValue& source : values) {
    try {
      record[source.element] =
          toText(object.call(source.getter, source.ofHit ? std::vector<platform::Value>{std::int64_t{1}}
                                                         : std::vector<platform::Value>{}));
    } catch (const platform::AutomationError&) {
      record[source.element].clear();
    }
  }
  fill(session.ResultCard, record);
}

}  // namespace kartix
