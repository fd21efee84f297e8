#include <unistd.h>

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <QSaveFile>
#include <QTransform>
#include <algorithm>
#include <utility>

#include "adapters/qt/Picture.h"
#include "adapters/qt/Qt.h"
#include "adapters/qt/Resampling.h"
#include "adapters/qt/Silence.h"

namespace kartix::adapters {
namespace {

using Turn = QImageIOHandler::Transformation;
using Turns = QImageIOHandler::Transformations;

constexpr int quality = 90;

QImage turned(QImage image, Turns turns) {
  image.mirror(turns.testFlag(Turn::TransformationMirror), turns.testFlag(Turn::TransformationFlip));
  if (!turns.testFlag(Turn::TransformationRotate90)) return image;
  constexpr qreal quarter = 90;
  return image.transformed(QTransform().rotate(quarter));
}

QSize turned(QSize size, Turns turns) {
  return turns.testFlag(Turn::TransformationRotate90) ? size.transposed() : size;
}

/// Where a rectangle of an upright canvas lies before the turn that sets it upright.
QRect turnedBack(QRect rect, QSize canvas, Turns turns) {
  if (turns.testFlag(Turn::TransformationRotate90)) {
    rect = {rect.y(), canvas.width() - rect.x() - rect.width(), rect.height(), rect.width()};
    canvas.transpose();
  }
  if (turns.testFlag(Turn::TransformationMirror)) rect.moveLeft(canvas.width() - rect.x() - rect.width());
  if (turns.testFlag(Turn::TransformationFlip)) rect.moveTop(canvas.height() - rect.y() - rect.height());
  return rect;
}

/// The other side of `known` in proportion.
int inProportion(int known, int ofSide, int otherSide) {
  constexpr double most = qt::mostPixels + 1.0;
  const double side = static_cast<double>(known) * otherSide / ofSide;
  return std::max(1, static_cast<int>(std::min(side + 0.5, most)));
}

/// Writes `bytes` beside `name` first, and puts that in place when the disk has it.
bool replaceFile(const QString& name, const QByteArray& bytes) {
  QSaveFile file(name);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() &&
         ::fsync(file.handle()) == 0 && file.commit();
}

/// Canvas and scale are remembered until the picture is needed: then its file is decoded once, and no larger than it
/// has to be.
class QtImage final : public platform::Image {
 public:
  explicit QtImage(qt::Picture picture)
      : picture_(std::move(picture)), size_(turned(picture_.size(), picture_.turn())), place_(QPoint(0, 0), size_) {}

  int width() const override { return size_.width(); }
  int height() const override { return size_.height(); }

  bool enlargeCanvas(int width, int height, int x, int y, std::uint32_t rgb) override {
    const QSize canvas(width, height);
    const bool fits = x >= 0 && y >= 0 && x <= width - size_.width() && y <= height - size_.height();
    if (!fits || !qt::workable(canvas) || !qt::workable(size_)) return false;
    if (place_.size() != size_ && !make(size_)) return false;
    size_ = canvas;
    place_.moveTopLeft({x, y});
    around_ = rgb;
    made_ = false;
    return true;
  }

  bool resize(int width, int height) override {
    if (width < 0 || height < 0 || (width == 0 && height == 0)) return false;
    if (width == 0) width = inProportion(height, size_.height(), size_.width());
    if (height == 0) height = inProportion(width, size_.width(), size_.height());
    return qt::workable(size_) && qt::workable({width, height}) && make({width, height});
  }

  void setResolution(int horizontal, int vertical) override {
    horizontal_ = horizontal;
    vertical_ = vertical;
  }

  bool save(const std::string& file) override {
    if (!made_ && !(qt::workable(size_) && make(size_))) return false;
    constexpr double metresPerInch = 0.0254;
    QImage image = picture_.pixels(1);
    if (horizontal_ > 0) image.setDotsPerMeterX(qRound(horizontal_ / metresPerInch));
    if (vertical_ > 0) image.setDotsPerMeterY(qRound(vertical_ / metresPerInch));
    const qt::Silence silence;
    QBuffer bytes;
    QImageWriter writer(&bytes, "jpeg");
    writer.setQuality(quality);
    return writer.write(image) && replaceFile(QString::fromStdString(file), bytes.data());
  }

 private:
  /// Makes of the file, or of what was made before, an upright picture of size `target` that is kept in memory.
  bool make(QSize target) {
    const Turns turns = picture_.turn();
    const QSize canvas = turned(size_, turns);
    const QSize size = turned(target, turns);
    const QRect place = turnedBack(place_, size_, turns);
    const int step = picture_.step(std::min(static_cast<double>(canvas.width()) / size.width(),
                                            static_cast<double>(canvas.height()) / size.height()));
    QImage pixels = picture_.pixels(step);
    if (pixels.isNull()) return false;
    pixels = qt::resample(pixels, {QSizeF(canvas) / step, QPointF(place.topLeft()) / step, around_}, size);
    if (pixels.isNull()) return false;
    // Who reads the file later need not know of the colour space that the camera used.
    if (pixels.colorSpace().isValid()) pixels.convertToColorSpace(QColorSpace::SRgb);
    pixels.setColorSpace({});
    picture_ = qt::Picture(turned(std::move(pixels), turns));
    size_ = target;
    place_ = {QPoint(0, 0), size_};
    made_ = true;
    return true;
  }

  qt::Picture picture_;
  QSize size_;
  QRect place_;  ///< of the picture on its canvas of `size_`
  QRgb around_ = 0;
  bool made_ = false;  ///< the picture is in memory as it is to be saved
  int horizontal_ = 0;
  int vertical_ = 0;
};

class QtImages final : public platform::ImageLibrary {
 public:
  std::unique_ptr<platform::Image> load(const std::string& file) override {
    auto picture = qt::Picture::read(QString::fromStdString(file));
    if (!picture) return nullptr;
    return std::make_unique<QtImage>(std::move(*picture));
  }
};

}  // namespace

std::unique_ptr<platform::ImageLibrary> makeQtImages() { return std::make_unique<QtImages>(); }

}  // namespace kartix::adapters
