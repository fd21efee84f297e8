#pragma once

#include <QByteArray>
#include <QImage>
#include <QImageIOHandler>
#include <QSize>
#include <QString>
#include <optional>

namespace kartix::adapters::qt {

/// Pictures with more pixels are not worked upon.
inline constexpr qint64 mostPixels = 100'000'000;

/// True when both sides are at least 1 and there are no more than `mostPixels`.
bool workable(QSize size);

/// A picture as its file holds it, neither turned nor, where the format allows for it, decoded.
class Picture {
 public:
  /// Reads a JPEG, PNG, BMP or TIFF file of at most 64 MiB. Nothing when it is anything else, or broken off.
  static std::optional<Picture> read(const QString& file);

  /// A picture that is at hand.
  explicit Picture(QImage pixels) : size_(pixels.size()), pixels_(std::move(pixels)) {}

  QSize size() const { return size_; }
  /// How it must be turned to be seen upright.
  QImageIOHandler::Transformations turn() const { return turn_; }

  /// The largest of the steps 1, 2, 4 and 8 at which it can be decoded, when it is to be made smaller `factor` times:
  /// at least twice as many pixels stay each way as will be needed.
  int step(double factor) const;

  /// Its pixels as Grayscale8 or RGB32, on white where it is transparent. One pixel stands for `step` by `step`
  /// pixels of the whole. Null when it is too large or cannot be decoded.
  QImage pixels(int step) const;

 private:
  Picture(QSize size, QImageIOHandler::Transformations turn) : size_(size), turn_(turn) {}

  QSize size_;
  QImageIOHandler::Transformations turn_;
  QByteArray jpeg_;  ///< file that is still to be decoded
  QImage pixels_;
};

}  // namespace kartix::adapters::qt
