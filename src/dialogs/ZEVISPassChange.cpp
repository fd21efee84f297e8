#include "dialogs/ZEVISPassChange.h"

#include "common/Text.h"
#include "runtime/Runtime.h"

namespace kartix {

ZEVISPassChange::ZEVISPassChange(Runtime& runtime)
    : Form("ZEVISPassChange", "ARGO Kartix [ZEVIS-Passwort ändern]"), runtime_(runtime) {
  Label[3].setText("ZEVIS-Account");
  Label[0].setText("Altes Passwort");
  Label[1].setText("Neues Passwort");
  Label[2].setText("Neues Passwort wiederholen");
  Text[3].setReadOnly(true);
  for (int secret : {0, 1, 2}) Text[secret].password = true;
  Button[0].setText("OK");
  Button[0].isDefault = true;
  Button[0].onClick = [this] { confirm(); };
  Button[1].setText("Abbrechen");
  Button[1].onClick = [this] { cancel(); };
}

void ZEVISPassChange::Prefill() {
  Text[3].setText(runtime_.konfiguration.ZEVISUserName);
  Text[0].setText(runtime_.konfiguration.ZEVISPass);
}

void ZEVISPassChange::onLoad() { runtime_.global.CenterForm(*this); }

void ZEVISPassChange::onCloseBox() { cancel(); }

void ZEVISPassChange::cancel() {
  result = -1;
  hide();
}

void ZEVISPassChange::confirm() {
  for (int entry : {0, 1, 2}) Text[entry].setText(text::trim(Text[entry].text()));
  if (!checkEntries()) return;
  result = 1;
  hide();
}

bool ZEVISPassChange::complain(const char* message, forms::TextField& field, bool selectAll) {
  runtime_.reporting.InfoMsg(message, hintCaption);
  field.setFocus(selectAll);
  return false;
}

bool ZEVISPassChange::checkEntries() {
  constexpr std::size_t shortest = 6;
  constexpr std::size_t longest = 20;
  const std::string& password = NewPassword();
  if (OldPassword().empty()) return complain("Bitte das alte Passwort angeben.", Text[0], false);
  if (password != Text[2].text()) {
    return complain("Neues Passwort und Bestätigung stimmen nicht überein.", Text[1], true);
  }
  if (text::length(password) < shortest) {
    return complain("Das neue Passwort ist zu kurz. Bitte mindestens 6 Zeichen angeben, keine Leerzeichen.", Text[1],
                    true);
  }
  if (text::length(password) > longest) {
    return complain("Das neue Passwort ist zu lang. Bitte maximal 20 Zeichen angeben.", Text[1], true);
  }
  if (password.find(' ') != std::string::npos) {
    return complain("Das neue Passwort darf keine Leerzeichen enthalten.", Text[1], true);
  }
  if (!runtime_.konfiguration.keepsZEVISPass(password)) {
    return complain("Das neue Passwort enthält ein Zeichen, das nicht gespeichert werden kann.", Text[1], true);
  }
  return true;
}

PasswordChange PasswordChangeWindow::askNewPassword() {
  ZEVISPassChange window(runtime_);
  window.Prefill();
  runtime_.showModal(window);
  return {window.result, window.OldPassword(), window.NewPassword()};
}

}  // namespace kartix
