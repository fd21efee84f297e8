#include "qt/SampleWindows.h"

#include <map>
#include <nlohmann/json.hpp>

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
#include "support/Files.h"

namespace kartix::tests {
namespace {

using Make = std::unique_ptr<forms::Form> (*)(Workplace&);

template <class F>
std::unique_ptr<forms::Form> atPlace(Workplace& place) {
  return std::make_unique<F>(place);
}

template <class F>
std::unique_ptr<forms::Form> inRuntime(Workplace& place) {
  return std::make_unique<F>(place.runtime);
}

std::unique_ptr<forms::Form> systemMessage(Workplace& /*place*/) {
  return std::make_unique<SystemMessageBox>("Fehler beim Öffnen der Datenbank",
                                            "Datenbank: DB-Benutzer, DB-Passwort oder DB-Name falsch.");
}

const std::map<std::string_view, Make> windows = {{"MessageBox", inRuntime<MessageBox>},
                                                  {"SystemMessageBox", systemMessage},
                                                  {"StartForm", atPlace<StartForm>},
                                                  {"Auswahl", atPlace<Auswahl>},
                                                  {"ZKR", atPlace<ZKR>},
                                                  {"ZEVISPassChange", inRuntime<ZEVISPassChange>},
                                                  {"Bestellung", atPlace<Bestellung>},
                                                  {"fStorno", atPlace<fStorno>},
                                                  {"Mitteilung", atPlace<Mitteilung>},
                                                  {"BestellFehler", inRuntime<BestellFehler>}};

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
  static const auto contents = nlohmann::json::parse(test::readBytes(KARTIX_SAMPLE_WINDOWS));
  auto form = windows.at(name)(component_.workplace());
  for (forms::Control* const each : form->controls()) fillByKind(*each);
  const nlohmann::json texts = contents.value(name, nlohmann::json::object());
  for (const auto& [filledControl, text] : texts.items()) {
    auto& filled = control<forms::Control>(*form, filledControl);
    filled.setText(text);
    auto* const combo = dynamic_cast<forms::ComboBox*>(&filled);
    if (combo && combo->text() != "Standard") combo->setItems({combo->text(), "anderes"});
  }
  return form;
}

std::vector<std::unique_ptr<forms::Form>> SampleWindows::all() {
  std::vector<std::unique_ptr<forms::Form>> forms;
  for (const auto& [name, make] : windows) forms.push_back(this->make(name));
  return forms;
}

}  // namespace kartix::tests
