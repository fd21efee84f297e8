#pragma once

#include <QImage>
#include <algorithm>
#include <cmath>

namespace kartix::test {

/// What a portrait has: soft shades, fine hair, hard edges, grain. No two quarters are alike. Its left margin is
/// nearly transparent where `format` has room for that.
inline QImage photograph(QSize size, QImage::Format format = QImage::Format_RGB32) {
  QImage image(size, QImage::Format_ARGB32);
  quint32 random = 1;
  for (int j = 0; j < size.height(); ++j) {
    auto* pixel = reinterpret_cast<QRgb*>(image.scanLine(j));
    for (int i = 0; i < size.width(); ++i) {
      const double x = double(i) / size.width();
      const double y = double(j) / size.height();
      random = random * 1664525U + 1013904223U;
      const double detail = (y < 0.4 ? 40 * std::cos(90 * (x * x + y * y)) : 0) +
                            (std::hypot(x - 0.6, y - 0.6) < 0.25 ? 60 : 0) + (random >> 24U) / 32.0;
      const auto shade = [detail](double base) { return std::clamp(int(base + detail), 0, 255); };
      *pixel++ = qRgba(shade(50 + 120 * x), shade(60 + 90 * y), shade(120 - 70 * x * y), x < 0.2 ? 40 : 255);
    }
  }
  if (format != QImage::Format_ARGB32) image.reinterpretAsFormat(QImage::Format_RGB32);
  return image.convertToFormat(format, Qt::ThresholdDither);
}

}  // namespace kartix::test
