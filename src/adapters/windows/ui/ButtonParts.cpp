#include "adapters/windows/ui/ButtonParts.h"

#include <algorithm>

#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

/// What stands around the text of a button.
constexpr int besideText = 24;
constexpr int aboveText = 10;
/// The ring of an option and its distance to the text.
constexpr int ring = 22;

}  // namespace

ButtonPart::ButtonPart(const Element& element, forms::Button& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(WC_BUTTONW, control.isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON);
}

Size ButtonPart::natural() const {
  const Size text = look().measure(wide(content()), look().font());
  return {text.width + look().pixels(besideText), text.height + look().pixels(aboveText)};
}

void ButtonPart::command(WORD code) {
  if (code == BN_CLICKED) press();
}

void ButtonPart::press() {
  act([this] { control_.userClick(); });
}

OptionPart::OptionPart(const Element& element, forms::OptionButton& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(WC_BUTTONW, BS_AUTORADIOBUTTON);
}

Size OptionPart::natural() const {
  const Size text = look().measure(wide(content()), look().font());
  return {text.width + look().pixels(ring), std::max(text.height + 2, look().pixels(ring - 4))};
}

void OptionPart::command(WORD code) {
  if (code == BN_CLICKED) act([this] { control_.userClick(); });
}

/// Of a group of options the tab key reaches the selected one, and the arrow keys lead to the others.
void OptionPart::show() {
  setText(marked());
  const bool selected = control_.selected();
  if ((send(BM_GETCHECK) == BST_CHECKED) != selected) send(BM_SETCHECK, selected ? BST_CHECKED : BST_UNCHECKED);
  const LONG style = GetWindowLongW(handle(), GWL_STYLE);
  const LONG wanted = selected ? style | WS_TABSTOP : style & ~WS_TABSTOP;
  if (style != wanted) SetWindowLongW(handle(), GWL_STYLE, wanted);
}

}  // namespace kartix::adapters::native
