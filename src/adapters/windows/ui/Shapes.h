#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "adapters/windows/ui/Design.h"
#include "adapters/windows/ui/GdiPlus.h"

namespace kartix::adapters::native {

/// Draws with smooth edges, in units of which `units` make the width of `size`.
void drawSmooth(HDC context, Size size, int units, const std::function<void(Gdiplus::Graphics&)>& draw);

/// The outline of `rect` with round corners.
std::unique_ptr<Gdiplus::GraphicsPath> rounded(const Gdiplus::RectF& rect, Gdiplus::REAL radius);

/// Draws bold letters of the design's font around `centre`.
void fillLetters(Gdiplus::Graphics& graphics, const wchar_t* letters, Gdiplus::REAL size, Gdiplus::PointF centre,
                 Gdiplus::Color colour);

/// Draws "question", "exclamation" or "critical" into a square of 100 units; of any other name nothing.
void drawIcon(Gdiplus::Graphics& graphics, std::string_view name);

}  // namespace kartix::adapters::native
