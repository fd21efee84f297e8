#include "dialogs/BestellFehler.h"

#include "platform/SoundPlayer.h"
#include "runtime/Runtime.h"

namespace kartix {

BestellFehler::BestellFehler(Runtime& runtime)
    : Form("BestellFehler", "Fehler bei der Bestellung / Stornierung / Mitteilung"), runtime_(runtime) {
  Label1.setText("Der Vorgang konnte nicht abgeschlossen werden. Fehlerhinweise des KBA:");
  for (auto& [index, field] : Textbox) {
    field->multiLine = true;
    field->setReadOnly(true);
  }
  Button.setText("OK");
  Button.isDefault = true;
  Button.onClick = [this] { hide(); };
}

void BestellFehler::onLoad() {
  runtime_.global.CenterForm(*this);
  runtime_.machine.sounds.playSound("SystemExclamation");
}

}  // namespace kartix
