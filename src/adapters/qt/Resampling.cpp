#include "adapters/qt/Resampling.h"

#include <QColorSpace>

#include "adapters/images/Resampling.h"

namespace kartix::adapters::qt {

QImage resample(const QImage& picture, const Canvas& canvas, QSize target) {
  QImage result(target, picture.format());
  if (result.isNull()) return result;
  // The bytes of a QRgb in memory, from the lowest, are blue, green, red.
  static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN);
  const int channels = picture.format() == QImage::Format_Grayscale8 ? 1 : 4;
  images::resample({picture.constBits(), picture.bytesPerLine(), picture.width(), picture.height(), channels},
                   {canvas.size.width(), canvas.size.height(), canvas.at.x(), canvas.at.y(), canvas.around},
                   {result.bits(), result.bytesPerLine(), result.width(), result.height(), channels});
  result.setColorSpace(picture.colorSpace());
  return result;
}

}  // namespace kartix::adapters::qt
