#include "dialogs/ZKR.h"

#include <array>

#include "dialogs/Workplace.h"
#include "hostdb/Session.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr std::array<const char*, 16> labels = {
    "Status",
    "Letzte Änderung im ZKR",
    "Meldende Stelle",
    "Kartennummer",
    "Ausstellende Behörde",
    "Produktionsdatum",
    "gültig ab",
    "gültig bis",
    "Chipkennung",
    "Führerscheinnummer / Staat",
    "Vorname (Karte)",
    "Familienname (Karte)",
    "Hinweis",
    "Anrede",
    "Geburtsort",
    "ausgestellt von",
};

}  // namespace

ZKR::ZKR(Workplace& workplace) : Form("ZKR", "ARGO Kartix [Übernahme der Daten]"), workplace_(workplace) {
  for (auto& [index, label] : Label) label->setText(labels.at(static_cast<std::size_t>(index)));
  for (auto& [index, field] : Text) field->setReadOnly(true);
  MText[0].multiLine = true;
  MText[0].setReadOnly(true);
  Button[0].setText("Übernehmen");
  Button[0].isDefault = true;
  Button[0].onClick = [this] { end(1); };
  Button[1].setText("Abbrechen");
  Button[1].onClick = [this] { end(-1); };
}

void ZKR::onLoad() {
  result = -1;
  workplace_.runtime.global.CenterForm(*this);
}

void ZKR::end(std::int16_t outcome) {
  result = outcome;
  hide();
}

void ZKR::ShowRecord() {
  const CFahrerkarte& card = workplace_.session.ResultCard;
  const auto display = [this](const std::string& date) { return workplace_.runtime.global.datum(date, false); };
  Text[0].setText(card.zkrstatus());
  Text[1].setText(display(card.zkrdatum));
  Text[2].setText(card.mittx);
  Text[3].setText(card.kartennr);
  Text[4].setText(card.babtx);
  Text[5].setText(display(card.proddatum));
  Text[6].setText(display(card.gueltigab));
  Text[7].setText(display(card.gueltigbis));
  Text[8].setText(card.chipkennung);
  Text[9].setText(card.kfsnr + " / " + card.kfsstaat);
  Text[10].setText(card.vornamen);
  Text[11].setText(card.familienname);
  MText[0].setText(card.stext);
}

}  // namespace kartix
