#include "adapters/qt/Picture.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <string_view>

#include "adapters/images/Completeness.h"
#include "adapters/qt/Jpeg.h"
#include "adapters/qt/Silence.h"

namespace kartix::adapters::qt {
namespace {

constexpr qint64 largestFile = qint64{64} << 20;

std::optional<QByteArray> readFile(const QString& name) {
  QFile file(name);
  // A pipe or a device could hold up the caller.
  if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile) return std::nullopt;
  QByteArray bytes = file.read(file.size());
  if (bytes.isEmpty() || file.error() != QFile::NoError) return std::nullopt;
  return bytes;
}

/// Reads a picture whose size has been found workable. Qt's own limit for one picture is lower, and counts for the
/// whole process: it is lifted only where it has to be. `silence` sees to it that no two threads do so.
QImage decode(QImageReader& reader, QSize size, const Silence& /*silence*/) {
  constexpr qint64 mostBytesOfPixel = 8;
  const int before = QImageReader::allocationLimit();
  const auto needed = static_cast<int>((mostBytesOfPixel * size.width() * size.height()) >> 20) + 1;
  const bool lift = before != 0 && before < needed;
  if (lift) QImageReader::setAllocationLimit(needed);
  QImage pixels = reader.read();
  if (lift) QImageReader::setAllocationLimit(before);
  return pixels;
}

void layOnWhite(QImage& pixels) {
  constexpr uint white = 255;
  pixels.convertTo(QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < pixels.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(pixels.scanLine(y));
    for (QRgb* pixel = row; pixel != row + pixels.width(); ++pixel) {
      const uint shine = white - qAlpha(*pixel);
      *pixel += shine << 24U | shine << 16U | shine << 8U | shine;
    }
  }
  pixels.reinterpretAsFormat(QImage::Format_RGB32);
}

std::string_view view(const QByteArray& bytes) { return {bytes.constData(), static_cast<std::size_t>(bytes.size())}; }

QImage plain(QImage pixels) {
  if (pixels.isNull()) return pixels;
  const bool grey = pixels.format() == QImage::Format_Grayscale8 || pixels.format() == QImage::Format_Grayscale16;
  if (pixels.hasAlphaChannel()) {
    layOnWhite(pixels);
  } else {
    pixels.convertTo(grey ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
  }
  return pixels;
}

}  // namespace

bool workable(QSize size) {
  return size.width() >= 1 && size.height() >= 1 && qint64{size.width()} * size.height() <= mostPixels;
}

std::optional<Picture> Picture::read(const QString& file) {
  const Silence silence;
  auto bytes = readFile(file);
  if (!bytes) return std::nullopt;
  QBuffer buffer(&*bytes);
  QImageReader reader(&buffer);
  const QByteArray format = reader.format();
  const QSize size = reader.size();
  if (size.isEmpty()) return std::nullopt;
  Picture picture(size, reader.transformation());
  if (format != "jpeg" && format != "png" && format != "bmp" && format != "tiff") return std::nullopt;
  if (!images::isComplete(view(format), view(*bytes))) return std::nullopt;
  if (format == "jpeg") {
    picture.jpeg_ = *bytes;
    return picture;
  }
  if (!workable(size)) return picture;
  picture.pixels_ = plain(decode(reader, size, silence));
  if (picture.pixels_.size() != size) return std::nullopt;
  return picture;
}

int Picture::step(double factor) const {
  if (jpeg_.isEmpty()) return 1;
  int step = 8;
  while (step > 1 && factor < 2 * step) step /= 2;
  return step;
}

QImage Picture::pixels(int step) const {
  if (jpeg_.isEmpty() || !workable(size_)) return pixels_;
  QImage pixels = readJpeg(view(jpeg_), step);
  const auto cells = [step](int side) { return (side + step - 1) / step; };
  return pixels.size() == QSize(cells(size_.width()), cells(size_.height())) ? pixels : QImage();
}

}  // namespace kartix::adapters::qt
