#include "dialogs/StartForm.h"

#include <utility>

#include "common/Text.h"
#include "dialogs/Auswahl.h"
#include "dialogs/Progress.h"
#include "dialogs/Workplace.h"
#include "dialogs/ZKR.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Fahrerkarten.h"
#include "hostdb/Session.h"
#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

// What the option buttons search by.
constexpr int byPerson = 0;
constexpr int byLicence = 1;
constexpr int byCard = 2;

// The text fields that have something to do with it.
constexpr int cardNumber = 4;
constexpr int licenceNumber = 8;

constexpr const char* ready = "ARGO Kartix: Bereit";

/// Numbers of cards and licences: capitals and digits.
std::optional<char32_t> numberKey(char32_t key) {
  constexpr char32_t backspace = 8;
  if (key >= U'a' && key <= U'z') return key - U'a' + U'A';
  const bool passes = (key >= U'A' && key <= U'Z') || (key >= U'0' && key <= U'9') || key == backspace;
  return passes ? std::optional(key) : std::nullopt;
}

std::string withParts(const std::string& nameParts, const std::string& name) {
  return text::trim(nameParts + " " + name);
}

}  // namespace

StartForm::StartForm(Workplace& workplace)
    : Form("StartForm", "ARGO Kartix"), Password(*this, workplace), workplace_(workplace) {
  label();
  for (int shown : {0, 1, 2, 3, 5, 9}) Text[shown].setReadOnly(true);
  for (const auto& [field, option] : {std::pair(cardNumber, byCard), std::pair(licenceNumber, byLicence)}) {
    Text[field].onKeyPress = numberKey;
    Text[field].onChange = [this, searched = option] { chooseSearch(searched); };
  }
  XPOption[byPerson].setSelected(true);
  Password.onCancelled = [this] { StatusBar.setText(ready); };
  Button[0].isDefault = true;
  Button[0].onClick = [this] { start(); };
  Button[2].onClick = [this] { end(-1); };
  Timer1.onTimer = [this] { startUp(); };
}

void StartForm::label() {
  Label[0].setText("Personennummer");
  Label[1].setText("Geburtsdatum");
  Label[2].setText("Geburtsort");
  Label[3].setText("Geburtsname");
  Label[4].setText("Kartennummer");
  Label[5].setText("Familienname");
  Label[7].setText("Vornamen");
  Label[8].setText("Führerscheinnummer");
  XPOption[byPerson].setText("Personendaten");
  XPOption[byLicence].setText("Führerscheinnummer");
  XPOption[byCard].setText("Kartennummer");
  Button[0].setText("Anfrage starten");
  Button[2].setText("Schließen");
}

void StartForm::end(std::int32_t outcome) {
  result = outcome;
  hide();
}

void StartForm::onLoad() {
  workplace_.runtime.global.CenterForm(*this);
  Timer1.stop();
  Timer1.start();
  Progress.setValue(0);
  workplace_.runtime.global.WaitCursor(true);
  Button[0].setEnabled(false);
  workplace_.runtime.machine.userInterface.repaint();
}

void StartForm::onFailure() {
  result = -1;
  workplace_.runtime.global.WaitCursor(false);
}

void StartForm::startUp() {
  Timer1.stop();
  Startup();
  Button[0].setEnabled(true);
  workplace_.runtime.global.WaitCursor(false);
}

void StartForm::Startup() {
  Trace& trace = workplace_.runtime.trace;
  trace.TraceEnter("StartForm::Startup");
  Password.showForOwnTransport();
  setProgress(40, "Daten werden geladen", true);
  if (workplace_.argo.Load()) {
    fill();
    setProgress(100, "", true);
    setProgress(0, ready, false);
  } else {
    end(-1);
  }
  trace.TraceLeave("StartForm::Startup");
}

void StartForm::fill() {
  const CPersonalien& person = workplace_.session.CurrentPerson;
  Text[0].setText(person.personennummer);
  Text[1].setText(workplace_.runtime.global.datum(person.geburtsdatum, false));
  Text[2].setText(person.geburtsort);
  Text[3].setText(withParts(person.zusatzg, person.geburtsname));
  Text[5].setText(withParts(person.zusatzf, person.familienname));
  Text[licenceNumber].setText(person.fsnr);
  Text[9].setText(text::trim(person.vornamen));
  Password.fill();

  const std::string card = text::trim(workplace_.session.AktKartennr);
  const bool known = !card.empty();
  Text[cardNumber].setText(card);
  // With a known card the search is by its number alone: typing a licence number must not change that.
  Text[licenceNumber].setReadOnly(known);
  XPOption[known ? byCard : byPerson].setSelected(true);
  XPOption[byPerson].setEnabled(!known);
  XPOption[byLicence].setEnabled(!known);
  XPOption[byCard].setEnabled(true);
}

void StartForm::chooseSearch(int option) {
  if (!XPOption[option].selected()) XPOption[option].setSelected(true);
}

void StartForm::setProgress(std::int16_t value, const std::string& text, bool smooth) {
  showProgress(workplace_.runtime, {Progress, StatusBar}, value, text, smooth);
}

void StartForm::start() {
  Button[0].setEnabled(false);
  runInquiry();
  Button[0].setEnabled(true);
}

InquiryCriteria StartForm::criteria() const {
  InquiryCriteria criteria;
  if (XPOption[byCard].selected()) {
    criteria.kgknr = Text[cardNumber].text();
  } else if (XPOption[byLicence].selected()) {
    criteria.fsnfk = Text[licenceNumber].text();
  } else {
    const CPersonalien& person = workplace_.session.CurrentPerson;
    criteria.vname = person.vornamen;
    criteria.gnamb = person.zusatzg;
    criteria.gname = person.geburtsname;
    criteria.fnamb = person.zusatzf;
    criteria.name = person.familienname;
    criteria.dgebu = person.geburtsdatum;
    criteria.gort = person.geburtsort;
  }
  return criteria;
}

bool StartForm::inquire() {
  ZKRAnfrage inquiry(workplace_.runtime, workplace_.session, workplace_.kba, workplace_.login, *this);
  return workplace_.runtime.konfiguration.ZKRNeu ? inquiry.ZKRAnfrageCOM(criteria())
                                                 : inquiry.ZKRAnfrageHTTP(criteria());
}

void StartForm::runInquiry() {
  setProgress(10, "Anfrage ZKR", false);
  const Fahrerkarten cards(workplace_.runtime, workplace_.session);
  if (XPOption[byCard].selected() && cards.belongsToOtherRecord(Text[cardNumber].text())) {
    workplace_.runtime.reporting.ReportError(2016);
    StatusBar.setText(ready);
    return;
  }
  const bool found = inquire();
  setProgress(100, "ZKR-Anfrage beendet", true);
  if (found) confirmRecord();
}

void StartForm::confirmRecord() {
  ZKR record(workplace_);
  record.ShowRecord();
  workplace_.runtime.showModal(record);
  if (record.result == 1) {
    end(1);
  } else {
    StatusBar.setText(ready);
  }
}

std::optional<std::string> StartForm::chooseHit(const Hits& hits) {
  Auswahl selection(workplace_);
  selection.FillList(hits);
  workplace_.runtime.showModal(selection);
  if (selection.result != 0) return std::nullopt;
  return selection.SelectedCard;
}

std::int32_t runInquiry(Workplace& workplace) {
  StartForm window(workplace);
  workplace.runtime.showModal(window);
  return window.result;
}

}  // namespace kartix
