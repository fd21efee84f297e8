#include "adapters/qt/ButtonMirrors.h"

#include <utility>

#include "adapters/qt/Accelerators.h"

namespace kartix::adapters::qt {

ButtonMirror::ButtonMirror(forms::Button& control, QPushButton& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {
  // Which button Enter presses is the form's to say, not the toolkit's.
  widget_.setAutoDefault(false);
  widget_.setDefault(control_.isDefault);
}

void ButtonMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QPushButton::clicked, this, [this] { act([this] { control_.userClick(); }); });
}

void ButtonMirror::show() {
  const QString text = withAccelerator(caption(), accelerator());
  if (widget_.text() != text) widget_.setText(text);
}

OptionMirror::OptionMirror(forms::OptionButton& control, QRadioButton& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {}

void OptionMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QRadioButton::clicked, this, [this] { act([this] { control_.userClick(); }); });
}

void OptionMirror::show() {
  const QString text = withAccelerator(caption(), accelerator());
  if (widget_.text() != text) widget_.setText(text);
  if (widget_.isChecked() == control_.selected()) return;
  // The form may have no option selected at all, which a group of radio buttons would not allow.
  widget_.setAutoExclusive(false);
  widget_.setChecked(control_.selected());
  widget_.setAutoExclusive(true);
}

}  // namespace kartix::adapters::qt
