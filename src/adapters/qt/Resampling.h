#pragma once

#include <QImage>
#include <QPointF>
#include <QSizeF>

namespace kartix::adapters::qt {

/// Canvas on which a picture lies, in pixels of the picture. What the picture leaves free has the colour `around`.
struct Canvas {
  QSizeF size;
  QPointF at;
  QRgb around = 0xffffffff;
};

/// The canvas with `picture` on it, scaled to `target`, through a Lanczos filter with three lobes: sharp enough for
/// print, and free of moiré however much it reduces. `picture` is Grayscale8 or RGB32, and so is the result; around a
/// grey picture the blue of the colour counts. Null when there is no memory for the result.
QImage resample(const QImage& picture, const Canvas& canvas, QSize target);

}  // namespace kartix::adapters::qt
