#include "qt/SampleWindows.h"

#include <array>

#include "dialogs/Auswahl.h"
#include "dialogs/BestellFehler.h"
#include "dialogs/Bestellung.h"
#include "dialogs/MessageBox.h"
#include "dialogs/Mitteilung.h"
#include "dialogs/StartForm.h"
#include "dialogs/Workplace.h"
#include "dialogs/ZEVISPassChange.h"
#include "dialogs/ZKR.h"
#include "dialogs/fStorno.h"

namespace kartix::tests {
namespace {

struct Content {
  std::string_view form;
  std::string_view control;
  std::string_view text;
};

constexpr auto contents = std::to_array<Content>({
    {"MessageBox", "Label1",
     "\r\nDas ZEVIS-Passwort muß geändert werden, aber Sie haben keine Berechtigung dazu. Bitte wenden Sie sich an "
     "einen Systembetreuer."},
    {"MessageBox", "Button[0]", "Ja"},
    {"MessageBox", "Button[1]", "Nein"},
    {"MessageBox", "Button[2]", "Abbrechen"},
    {"StartForm", "Text[0]", "4711"},
    {"StartForm", "Text[1]", "24.12.1971"},
    {"StartForm", "Text[2]", "Garmisch-Partenkirchen"},
    {"StartForm", "Text[3]", "von Hohenfels"},
    {"StartForm", "Text[5]", "von der Heydt"},
    {"StartForm", "Text[8]", "B072RRE2I55"},
    {"StartForm", "Text[9]", "Maximilian Johann"},
    {"StartForm", "StatusBar", "Daten werden geladen"},
    {"ZKR", "Text[0]", "16 - Karte wg. unberechtigter Nutzung gesucht (zur Fahndung ausgeschrieben)"},
    {"ZKR", "Text[1]", "14.03.2022"},
    {"ZKR", "Text[2]", "Stadt Flensburg"},
    {"ZKR", "Text[3]", "DF000000123456780"},
    {"ZKR", "Text[4]", "Kraftfahrt-Bundesamt"},
    {"ZKR", "Text[5]", "10.03.2022"},
    {"ZKR", "Text[6]", "14.03.2022"},
    {"ZKR", "Text[7]", "14.03.2027"},
    {"ZKR", "Text[8]", "0123456789ABCDEF"},
    {"ZKR", "Text[9]", "B072RRE2I55 / D"},
    {"ZKR", "Text[10]", "Maximilian Johann"},
    {"ZKR", "Text[11]", "von der Heydt"},
    {"ZKR", "MText[0]", "Karte am 01.03.2023 wieder aufgefunden.\r\nRückgabe vermerkt."},
    {"ZEVISPassChange", "Text[3]", "argo01"},
    {"Bestellung", "Label2[0]", "Dr.von der Heydt"},
    {"Bestellung", "Label2[1]", "Maximilian Johann"},
    {"Bestellung", "Label2[2]", "24.12.1971"},
    {"Bestellung", "Label2[3]", "00.00.0000"},
    {"Bestellung", "Label2[4]", "00.00.0000"},
    {"Bestellung", "Label2[5]", "Stadt Flensburg - Straßenverkehrsamt"},
    {"Bestellung", "Label2[6]", "B072RRE2I55"},
    {"Bestellung", "Label2[7]", "DF00000000000000"},
    {"Bestellung", "Combo[0]", "norm. Bestellung"},
    {"Bestellung", "Combo[1]", "Standard"},
    {"Bestellung", "Combo[2]", "Postzustellungsurkunde"},
    {"Bestellung", "StatusBar", "Bereit"},
    {"fStorno", "Label1[1]", "DF000000123456780"},
    {"fStorno", "StatusBar", "Bereit"},
    {"Mitteilung", "Label1[1]", "DF000000123456780"},
    {"Mitteilung", "Textbox[1]", "9 - Karte vorübergehend eingezogen"},
    {"Mitteilung", "Textbox[0]", "Karte wurde bei einer Kontrolle eingezogen."},
    {"Mitteilung", "StatusBar", "Bereit"},
    {"BestellFehler", "Textbox[0]", "1001: Antrag abgelehnt"},
    {"BestellFehler", "Textbox[1]", "Feld photograph: Bild fehlt\r\nFeld birthPlace: leer"},
});

constexpr std::array<std::string_view, 10> names = {"MessageBox", "SystemMessageBox", "StartForm",  "Auswahl",
                                                    "ZKR",        "ZEVISPassChange",  "Bestellung", "fStorno",
                                                    "Mitteilung", "BestellFehler"};

std::unique_ptr<forms::Form> empty(std::string_view name, Workplace& place) {
  if (name == "MessageBox") return std::make_unique<MessageBox>(place.runtime);
  if (name == "StartForm") return std::make_unique<StartForm>(place);
  if (name == "Auswahl") return std::make_unique<Auswahl>(place);
  if (name == "ZKR") return std::make_unique<ZKR>(place);
  if (name == "ZEVISPassChange") return std::make_unique<ZEVISPassChange>(place.runtime);
  if (name == "Bestellung") return std::make_unique<Bestellung>(place);
  if (name == "fStorno") return std::make_unique<fStorno>(place);
  if (name == "Mitteilung") return std::make_unique<Mitteilung>(place);
  if (name == "BestellFehler") return std::make_unique<BestellFehler>(place.runtime);
  return std::make_unique<SystemMessageBox>("Fehler beim Öffnen der Datenbank",
                                            "Datenbank: DB-Benutzer, DB-Passwort oder DB-Name falsch.");
}

void fillByKind(forms::Control& each) {
  if (auto* const field = dynamic_cast<forms::TextField*>(&each); field && field->password) {
    field->setText("geheim12");
    field->setVisible(true);
  }
  if (each.name() == "Label[9]" || each.name() == "Picture1[0]") each.setVisible(true);
  if (auto* const combo = dynamic_cast<forms::ComboBox*>(&each)) combo->setItems({"Standard", "Express"});
  if (auto* const bar = dynamic_cast<forms::ProgressBar*>(&each)) bar->setValue(40);
  if (auto* const list = dynamic_cast<forms::ListView*>(&each)) {
    list->setRows(
        {{"DF000000123456780", "14.03.2027", "B072RRE2I55", "von der Heydt", "Maximilian Johann", "24937 Flensburg"},
         {"DF000000765432100", "01.11.2025", "K11T09AA7", "Heydt", "Max", "99084 Erfurt"}});
  }
}

}  // namespace

SampleWindows::SampleWindows(platform::UserInterface& userInterface)
    : component_([&] {
        Setup setup;
        setup.registryFile = directory_ / "registry.reg";
        setup.userInterface = &userInterface;
        return setup;
      }()) {}

std::unique_ptr<forms::Form> SampleWindows::make(std::string_view name) {
  auto form = empty(name, component_.workplace());
  for (forms::Control* const each : form->controls()) fillByKind(*each);
  for (const Content& content : contents) {
    if (content.form != name) continue;
    auto& filled = control<forms::Control>(*form, content.control);
    filled.setText(std::string(content.text));
    auto* const combo = dynamic_cast<forms::ComboBox*>(&filled);
    if (combo && combo->text() != "Standard") combo->setItems({combo->text(), "anderes"});
  }
  return form;
}

std::vector<std::unique_ptr<forms::Form>> SampleWindows::all() {
  std::vector<std::unique_ptr<forms::Form>> forms;
  forms.reserve(names.size());
  for (const std::string_view name : names) forms.push_back(make(name));
  return forms;
}

}  // namespace kartix::tests
