#include "adapters/windows/ui/CardFace.h"

#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "adapters/windows/ui/Shapes.h"

namespace kartix::adapters::native {
namespace {

using Gdiplus::Color;
using Gdiplus::Graphics;
using Gdiplus::GraphicsPath;
using Gdiplus::Pen;
using Gdiplus::PointF;
using Gdiplus::REAL;
using Gdiplus::RectF;
using Gdiplus::SolidBrush;

constexpr REAL emblemLeft = 20;
constexpr REAL emblemTop = 16;
constexpr REAL emblemWidth = 54;
constexpr REAL emblemHeight = 38;
constexpr REAL chipWidth = 64;
constexpr REAL chipHeight = 54;
constexpr REAL cornerRadius = 14;

PointF turned(PointF centre, REAL distance, double angle) {
  return centre +
         PointF(distance * static_cast<REAL>(std::sin(angle)), distance * -static_cast<REAL>(std::cos(angle)));
}

void drawStar(Graphics& graphics, PointF centre, REAL radius) {
  constexpr REAL inner = 0.382F;
  std::array<PointF, 10> corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const double angle = static_cast<double>(i) * std::numbers::pi / 5;
    corners.at(i) = turned(centre, i % 2 == 0 ? radius : radius * inner, angle);
  }
  const SolidBrush yellow(Color(0xff, 0xcc, 0x00));
  graphics.FillPolygon(&yellow, corners.data(), static_cast<INT>(corners.size()));
}

void drawEmblem(Graphics& graphics) {
  constexpr int stars = 12;
  const RectF emblem(emblemLeft, emblemTop, emblemWidth, emblemHeight);
  const SolidBrush blue(Color(0x00, 0x33, 0x99));
  graphics.FillPath(&blue, rounded(emblem, 3).get());
  const PointF centre(emblem.X + emblem.Width / 2, emblem.Y + emblem.Height / 2);
  for (int i = 0; i < stars; ++i) drawStar(graphics, turned(centre, 14, i * 2 * std::numbers::pi / stars), 2.6F);
  fillLetters(graphics, L"D", 15, centre, Color(0xff, 0xff, 0xff));
}

/// Waves across the card, each a little later than the one above.
void drawPattern(Graphics& graphics, const RectF& face) {
  constexpr int step = 4;
  constexpr int distance = 7;
  const Pen pen(Color(0x30, 0x4a, 0x7a, 0xb8), 0.8F);
  const auto bottom = static_cast<int>(face.GetBottom()) + 2 * distance;
  for (int y = -distance; y < bottom; y += distance) {
    std::vector<PointF> wave;
    for (int x = 0; x <= static_cast<int>(face.GetRight()) + step; x += step) {
      wave.emplace_back(static_cast<REAL>(x),
                        static_cast<REAL>(y + 6 * std::sin(x / 38.0 + y / 60.0) + 3 * std::sin(x / 13.0 - y / 45.0)));
    }
    graphics.DrawLines(&pen, wave.data(), static_cast<INT>(wave.size()));
  }
}

void drawChip(Graphics& graphics, const RectF& place) {
  const Gdiplus::LinearGradientBrush gold(PointF(place.X, place.Y), PointF(place.GetRight(), place.GetBottom()),
                                          Color(0xf1, 0xdd, 0x9c), Color(0xc2, 0xa0, 0x4a));
  const Pen pen(Color(0x8f, 0x74, 0x2e), 1);
  const auto outline = rounded(place, 8);
  graphics.FillPath(&gold, outline.get());
  graphics.DrawPath(&pen, outline.get());
  const RectF middle(place.X + place.Width / 3, place.Y + place.Height / 4, place.Width / 3, place.Height / 2);
  graphics.DrawPath(&pen, rounded(middle, 5).get());
  for (const REAL part : {0.25F, 0.5F, 0.75F}) {
    const REAL y = place.Y + part * place.Height;
    graphics.DrawLine(&pen, PointF(place.X, y), PointF(middle.X, y));
    graphics.DrawLine(&pen, PointF(middle.GetRight(), y), PointF(place.GetRight(), y));
  }
  const REAL x = place.X + place.Width / 2;
  graphics.DrawLine(&pen, PointF(x, place.Y), PointF(x, middle.Y));
  graphics.DrawLine(&pen, PointF(x, middle.GetBottom()), PointF(x, place.GetBottom()));
}

}  // namespace

void drawCardFace(Graphics& graphics, Gdiplus::SizeF size) {
  const RectF face(0.5F, 0.5F, size.Width - 1, size.Height - 1);
  const auto outline = rounded(face, cornerRadius);
  const Gdiplus::LinearGradientBrush paper(PointF(0, 0), PointF(size.Width, size.Height), Color(0xff, 0xff, 0xff),
                                           Color(0xe6, 0xee, 0xf7));
  graphics.FillPath(&paper, outline.get());
  graphics.SetClip(outline.get());
  drawPattern(graphics, face);
  graphics.ResetClip();
  drawEmblem(graphics);
  drawChip(graphics, RectF(emblemLeft, face.Y + face.Height * 0.36F, chipWidth, chipHeight));
  const Pen edge(Color(0x8b, 0xa0, 0xb8), 1);
  graphics.DrawPath(&edge, outline.get());
}

}  // namespace kartix::adapters::native
