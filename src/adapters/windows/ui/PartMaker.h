#pragma once

#include <memory>

#include "adapters/windows/ui/Part.h"

namespace kartix::adapters::native {

class CardPart;

/// The native control for an element that shows something, with the form's control that it belongs to if there is
/// one; nothing for layouts, and for widgets that are none without a control. `card` is the card that it lies on.
std::unique_ptr<Part> makePart(const Element& element, forms::Control* control, const Look& look,
                               const CardPart* card);

/// "Text[3]" for "Text_3".
std::string controlName(std::string_view widgetName);

}  // namespace kartix::adapters::native
