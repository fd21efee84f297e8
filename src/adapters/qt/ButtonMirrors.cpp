#include "adapters/qt/ButtonMirrors.h"

#include <algorithm>
#include <utility>

#include "platform/forms/Form.h"

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
  const QString text = marked();
  if (widget_.text() != text) widget_.setText(text);
}

OptionMirror::OptionMirror(forms::OptionButton& control, QRadioButton& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {}

void OptionMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QRadioButton::clicked, this, [this] { act([this] { control_.userClick(); }); });
}

void OptionMirror::show() {
  const QString text = marked();
  if (widget_.text() != text) widget_.setText(text);
  if (control_.selected()) {
    widget_.setChecked(true);
    leadTabHere();
  }
  if (!control_.selected() && widget_.isChecked() && !anySelected()) uncheck();
}

bool OptionMirror::anySelected() const {
  const auto& controls = control_.form().controls();
  return std::any_of(controls.begin(), controls.end(), [](const forms::Control* control) {
    const auto* const option = dynamic_cast<const forms::OptionButton*>(control);
    return option && option->selected();
  });
}

/// Of a group of radio buttons the tab key reaches one, and the arrow keys lead to the others.
void OptionMirror::leadTabHere() {
  for (QRadioButton* const option :
       widget_.parentWidget()->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly)) {
    option->setFocusPolicy(option == &widget_ ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

/// The form may have no option selected at all, which a group of radio buttons would not allow. Where one is
/// selected, checking that one unchecks the others.
void OptionMirror::uncheck() {
  widget_.setAutoExclusive(false);
  widget_.setChecked(false);
  widget_.setAutoExclusive(true);
}

}  // namespace kartix::adapters::qt
