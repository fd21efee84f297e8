#include "dialogs/MessageBox.h"

#include <array>
#include <exception>

#include "platform/SoundPlayer.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// System sounds of the icons 0, 1 and 2.
constexpr std::array<std::string_view, 3> sounds = {"SystemQuestion", "SystemExclamation", "SystemHand"};

std::string_view orElse(const std::string& caption, std::string_view usual) {
  return caption.empty() ? usual : std::string_view(caption);
}

}  // namespace

MessageBox::MessageBox(Runtime& runtime) : Form("MessageBox", "ARGO"), runtime_(runtime) {
  for (auto& [index, picture] : Picture1) picture->setVisible(false);
  for (auto& [index, button] : Button) button->onClick = [this, pressed = index] { press(pressed); };
}

void MessageBox::onLoad() {
  runtime_.global.CenterForm(*this);
  result = notPressed;
}

void MessageBox::onCloseBox() {
  result = closed;
  hide();
}

void MessageBox::press(int index) {
  constexpr std::array<std::int16_t, 3> results = {1, 0, -1};
  result = results.at(static_cast<std::size_t>(index));
  if (index == 1 && Button[1].text() == "OK") result = 1;
  hide();
}

void MessageBox::lay(int index, bool visible, std::string_view caption) {
  Button[index].setVisible(visible);
  Button[index].setText(std::string(caption));
}

void MessageBox::Setup(int buttons, int icon, const std::string& caption1, const std::string& caption2) {
  SoundName_.clear();
  switch (buttons) {
    case 2:
      lay(0, true, orElse(caption1, "OK"));
      lay(1, false, "");
      lay(2, true, orElse(caption2, "Abbrechen"));
      break;
    case 3:
      lay(0, true, "Ja");
      lay(1, true, "Nein");
      lay(2, true, "Abbrechen");
      break;
    default:
      lay(0, false, "");
      lay(1, true, "OK");
      lay(2, false, "");
  }
  Button[Button[0].visible() ? 0 : 1].isDefault = true;
  for (auto& [index, picture] : Picture1) picture->setVisible(index == icon);
  if (icon >= 0 && static_cast<std::size_t>(icon) < sounds.size()) {
    SoundName_ = sounds.at(static_cast<std::size_t>(icon));
  }
  if (!SoundName_.empty()) playSound();
}

void MessageBox::playSound() const {
  try {
    runtime_.machine.sounds.playSound(SoundName_);
  } catch (const std::exception& failure) {
    // The message matters, not its sound.
    runtime_.trace.TraceLine({"Klang nicht abgespielt: ", failure.what()}, trace_level::calls);
  }
}

SystemMessageBox::SystemMessageBox(std::string caption, std::string text)
    : Form("SystemMessageBox", std::move(caption)) {
  Label1.setText(std::move(text));
  Button[0].setText("OK");
  Button[0].isDefault = true;
  Button[0].onClick = [this] { hide(); };
}

}  // namespace kartix
