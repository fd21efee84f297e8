#pragma once

#include "adapters/windows/ui/GdiPlus.h"

namespace kartix::adapters::native {

/// Draws the face of a driver card in the European layout, without its fields: white with a fine pattern, the member
/// state's sign within the stars at the top left, and the chip at the left.
void drawCardFace(Gdiplus::Graphics& graphics, Gdiplus::SizeF size);

}  // namespace kartix::adapters::native
