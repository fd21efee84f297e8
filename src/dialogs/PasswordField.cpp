#include "dialogs/PasswordField.h"

#include <string>

#include "dialogs/Workplace.h"
#include "dialogs/ZEVISPassChange.h"
#include "gateway/Login.h"
#include "runtime/Runtime.h"

namespace kartix {

PasswordField::PasswordField(forms::Form& form, Workplace& workplace)
    : Label9(form, "Label[9]"), ZEVISPass(form, "ZEVISPass"), workplace_(workplace) {
  Label9.setText("ZEVIS-Passwort");
  Label9.setVisible(false);
  ZEVISPass.password = true;
  ZEVISPass.setVisible(false);
  ZEVISPass.onClick = [this] { change(); };
}

void PasswordField::showForOwnTransport() {
  if (workplace_.runtime.konfiguration.ZKRNeu) return;
  Label9.setVisible(true);
  ZEVISPass.setVisible(true);
}

void PasswordField::fill() { ZEVISPass.setText(workplace_.runtime.konfiguration.ZEVISPass); }

void PasswordField::change() {
  constexpr std::int32_t accepted = 0;
  Runtime& runtime = workplace_.runtime;
  if (!runtime.konfiguration.AllowPassChange) {
    runtime.reporting.InfoMsg(
        "\r\nSie dürfen das ZEVIS-Passwort nicht ändern. Bitte wenden Sie sich an einen Systemberteuer.",
        "Keine Berechtigung");
    return;
  }
  PasswordChange entered = PasswordChangeWindow(runtime).askNewPassword();
  if (entered.result != 1) {
    if (onCancelled) onCancelled();
    return;
  }
  std::string returnText;
  if (workplace_.login.ZEVISLogin(entered.oldPassword, returnText, entered.newPassword) == accepted) fill();
}

}  // namespace kartix
