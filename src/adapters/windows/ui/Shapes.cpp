#include "adapters/windows/ui/Shapes.h"

#include <array>
#include <cstdint>
#include <vector>

#include "adapters/windows/ui/Look.h"

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

Color white() { return {0xff, 0xff, 0xff}; }

void drawLine(Graphics& graphics, REAL width, PointF from, PointF to) {
  Pen pen(white(), width);
  pen.SetStartCap(Gdiplus::LineCapRound);
  pen.SetEndCap(Gdiplus::LineCapRound);
  graphics.DrawLine(&pen, from, to);
}

void fillDisc(Graphics& graphics, Color colour, REAL left, REAL top, REAL size) {
  const SolidBrush brush(colour);
  graphics.FillEllipse(&brush, left, top, size, size);
}

void drawExclamation(Graphics& graphics) {
  const std::array corners{PointF(50, 12), PointF(92, 86), PointF(8, 86)};
  const Color amber(0xe8, 0x9a, 0x00);
  Pen pen(amber, 12);
  pen.SetLineJoin(Gdiplus::LineJoinRound);
  const SolidBrush brush(amber);
  graphics.FillPolygon(&brush, corners.data(), static_cast<INT>(corners.size()));
  graphics.DrawPolygon(&pen, corners.data(), static_cast<INT>(corners.size()));
  drawLine(graphics, 10, PointF(50, 36), PointF(50, 60));
  fillDisc(graphics, white(), 45, 72, 10);
}

/// So many pixels each way become one.
constexpr int finer = 4;

/// The mean of the pixels of a finer image, whose colours are multiplied by their opacity.
std::uint32_t mean(const std::uint8_t* corner, std::ptrdiff_t stride) {
  std::array<std::uint32_t, 4> sums{};
  for (int y = 0; y < finer; ++y) {
    for (int x = 0; x < finer; ++x) {
      for (std::size_t channel = 0; channel < sums.size(); ++channel)
        sums.at(channel) += corner[y * stride + 4 * x + static_cast<std::ptrdiff_t>(channel)];
    }
  }
  std::uint32_t pixel = 0;
  for (std::size_t channel = 0; channel < sums.size(); ++channel)
    pixel |= sums.at(channel) / (finer * finer) << 8U * channel;
  return pixel;
}

void reduce(Gdiplus::Bitmap& fine, std::vector<std::uint32_t>& pixels, Size size) {
  Gdiplus::BitmapData data{};
  const Gdiplus::Rect all(0, 0, finer * size.width, finer * size.height);
  if (fine.LockBits(&all, Gdiplus::ImageLockModeRead, PixelFormat32bppPARGB, &data) != Gdiplus::Ok) return;
  for (int y = 0; y < size.height; ++y) {
    const auto* const row = static_cast<const std::uint8_t*>(data.Scan0) + std::ptrdiff_t{finer} * y * data.Stride;
    for (int x = 0; x < size.width; ++x)
      pixels[static_cast<std::size_t>(y * size.width + x)] = mean(row + std::ptrdiff_t{4 * finer} * x, data.Stride);
  }
  fine.UnlockBits(&data);
}

}  // namespace

/// The library's own smoothing is not the same everywhere: drawn finer, and reduced.
void drawSmooth(HDC context, Size size, int units, const std::function<void(Graphics&)>& draw) {
  if (size.width <= 0 || size.height <= 0) return;
  Gdiplus::Bitmap fine(finer * size.width, finer * size.height, PixelFormat32bppPARGB);
  {
    Graphics graphics(&fine);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const REAL scale = static_cast<REAL>(finer * size.width) / static_cast<REAL>(units);
    graphics.ScaleTransform(scale, scale);
    draw(graphics);
  }
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height));
  reduce(fine, pixels, size);
  Gdiplus::Bitmap image(size.width, size.height, 4 * size.width, PixelFormat32bppPARGB,
                        reinterpret_cast<BYTE*>(pixels.data()));
  Graphics(context).DrawImage(&image, 0, 0, size.width, size.height);
}

std::unique_ptr<GraphicsPath> rounded(const RectF& rect, REAL radius) {
  auto path = std::make_unique<GraphicsPath>();
  const REAL size = 2 * radius;
  path->AddArc(rect.X, rect.Y, size, size, 180, 90);
  path->AddArc(rect.GetRight() - size, rect.Y, size, size, 270, 90);
  path->AddArc(rect.GetRight() - size, rect.GetBottom() - size, size, size, 0, 90);
  path->AddArc(rect.X, rect.GetBottom() - size, size, size, 90, 90);
  path->CloseFigure();
  return path;
}

void fillLetters(Graphics& graphics, const wchar_t* letters, REAL size, PointF centre, Color colour) {
  const std::wstring face = installedFace();
  const Gdiplus::FontFamily family(face.c_str());
  const Gdiplus::StringFormat format;
  GraphicsPath path;
  path.AddString(letters, -1, &family, Gdiplus::FontStyleBold, size, PointF(0, 0), &format);
  RectF box;
  path.GetBounds(&box);
  Gdiplus::Matrix move;
  move.Translate(centre.X - box.X - box.Width / 2, centre.Y - box.Y - box.Height / 2);
  path.Transform(&move);
  const SolidBrush brush(colour);
  graphics.FillPath(&brush, &path);
}

void drawIcon(Graphics& graphics, std::string_view name) {
  if (name == "question") {
    fillDisc(graphics, Color(0x1f, 0x6f, 0xc4), 4, 4, 92);
    fillLetters(graphics, L"?", 64, PointF(50, 50), white());
  } else if (name == "exclamation") {
    drawExclamation(graphics);
  } else if (name == "critical") {
    fillDisc(graphics, Color(0xc6, 0x28, 0x28), 4, 4, 92);
    drawLine(graphics, 13, PointF(33, 33), PointF(67, 67));
    drawLine(graphics, 13, PointF(67, 33), PointF(33, 67));
  }
}

}  // namespace kartix::adapters::native
