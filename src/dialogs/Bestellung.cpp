#include "dialogs/Bestellung.h"

#include <array>
#include <string>

#include "common/Text.h"
#include "dialogs/Operations.h"
#include "dialogs/OrderImages.h"
#include "dialogs/Workplace.h"
#include "gateway/Order.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/HostStatements.h"
#include "hostdb/Session.h"
#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

constexpr const char* windowCaption = "ARGO Kartix [Bestellung der Fahrerkarte]";

/// Numbers of the card's fields in the European layout.
constexpr std::array<const char*, 9> fieldNumbers = {"1.", "2.", "3.", "4a", "4b", "4c", "5a", "5b", "7."};

/// What stands on the card until it is made.
constexpr const char* noDateYet = "00.00.0000";
constexpr const char* noNumberYet = "DF00000000000000";

/// Asked for when nothing is chosen in the list of that index.
constexpr std::array<const char*, 3> missingChoice = {
    "\r\n\r\nBitte geben Sie an, ob eine Reklamation vorliegt.",
    "\r\n\r\nBitte geben Sie die Bestellart an (Standard oder Express).",
    "\r\n\r\nBitte geben Sie die Versandart an.",
};

}  // namespace

Bestellung::Bestellung(Workplace& workplace)
    : OperationFrame(workplace, {.name = "Bestellung",
                                 .caption = windowCaption,
                                 .action = "Bestellen",
                                 .cancelled = 0,
                                 .actionIsDefault = true}) {
  for (auto& [index, label] : Label1) label->setText(fieldNumbers.at(static_cast<std::size_t>(index)));
}

bool Bestellung::convertImages() {
  Runtime& runtime = workplace().runtime;
  const auto prepare = [&](int picture, auto how) {
    const PreparedImage image = how(runtime.machine, runtime.konfiguration.ImageDir);
    if (image.error != 0) {
      runtime.reporting.ReportError(image.error);
      return false;
    }
    Bild[picture].setFile(image.file);
    return true;
  };
  ShowProgress(10, "Konvertiere Foto", true);
  if (!prepare(0, preparePhoto)) return false;
  ShowProgress(20, "Konvertiere Unterschrift", true);
  return prepare(1, prepareSignature);
}

bool Bestellung::startup() {
  // Paths are made of the person's number: one that is none is left to the loading to report.
  const bool known = isPersonNumber(workplace().session.CurrentPerson.personennummer);
  if (known && !convertImages()) return false;
  ShowProgress(50, "Lade Daten", true);
  if (!workplace().argo.LoadForOrder()) return false;
  ShowProgress(50, "Initialisiere Bestellung", true);
  fill();
  ShowProgress(70, "", true);
  ShowProgress(0, "Bereit", true);
  return true;
}

void Bestellung::fill() {
  Runtime& runtime = workplace().runtime;
  const CPersonalien& person = workplace().session.CurrentPerson;
  const CFahrerkarte& card = workplace().session.OperationCard;
  Combo[0].setItems({"norm. Bestellung", "Reklamation"});
  Combo[0].setText("");
  Combo[1].setItems({"Standard", "Express"});
  Combo[1].setText("Standard");
  Combo[2].setItems({"Sammelversand", "Postzustellungsurkunde"});
  Combo[2].setText("Sammelversand");
  Label2[0].setText(text::trim(person.titel + card.familienname));
  Label2[1].setText(card.vornamen);
  Label2[2].setText(runtime.global.datum(person.vhkgebdat, false));
  Label2[3].setText(noDateYet);
  Label2[4].setText(noDateYet);
  Label2[5].setText(runtime.konfiguration.BehoerdeVorderseite);
  Label2[6].setText(card.kfsnr);
  Label2[7].setText(noNumberYet);
  setCaption(windowCaption);
  Password.fill();
}

bool Bestellung::checkInput() {
  for (auto& [index, list] : Combo) list->setText(text::trim(list->text()));
  for (auto& [index, list] : Combo) {
    if (!list->text().empty()) continue;
    workplace().runtime.reporting.InfoMsg(missingChoice.at(static_cast<std::size_t>(index)), hintCaption);
    list->setFocus();
    return false;
  }
  return true;
}

bool Bestellung::send() {
  constexpr std::int16_t yes = 1;
  Runtime& runtime = workplace().runtime;
  if (!checkInput()) return false;
  if (runtime.reporting.YesNoMsg("\r\n\r\n  Karte jetzt bestellen?", "ARGO Kartix - Frage") != yes) return false;
  runtime.machine.userInterface.repaint();
  DriverCardOrder order(exchange());
  const OrderChoices choices = {Combo[0].text(), Combo[1].text(), Combo[2].text()};
  return runtime.konfiguration.ZKRNeu ? order.SendOrderAutomation(choices) : order.SendOrderHttp(choices);
}

std::int16_t runOrder(Workplace& workplace) {
  Bestellung window(workplace);
  workplace.runtime.showModal(window);
  return window.result;
}

}  // namespace kartix
