#include <QImageReader>
#include <memory>

#include "adapters/qt/Qt.h"
#include "bench/Targets.h"
#include "images/Photograph.h"

namespace kartix::bench {
namespace {

constexpr int height = 490;

struct Photo {
  explicit Photo(QSize size) { test::photograph(size).save(QString::fromStdString(file), "jpeg", 92); }

  test::TempDir directory;
  std::string file = (directory / "1.JP0").string();
  std::string target = (directory / "1.JP2").string();
};

bool prepared(const Photo& photo) {
  const auto image = adapters::makeQtImages()->load(photo.file);
  return image && image->resize(0, height) && image->save(photo.target);
}

bool plain(const Photo& photo) {
  QImageReader reader(QString::fromStdString(photo.file));
  reader.setAutoTransform(true);
  const QImage image = reader.read().scaledToHeight(height, Qt::SmoothTransformation);
  return image.save(QString::fromStdString(photo.target), "jpeg", 90);
}

Target photoTarget(const std::string& what, QSize size, double most) {
  const auto photo = std::make_shared<Photo>(size);
  return compare(
      what, [photo] { return prepared(*photo); }, "Qt", [photo] { return plain(*photo); }, most);
}

}  // namespace

/// The filter for print takes in more pixels than Qt's own; a large photo makes up for it, being decoded at a reduced
/// scale.
std::vector<Target> imageTargets() {
  return {photoTarget("photo of 12 megapixels prepared", {3000, 4000}, 1),
          photoTarget("photo of 600 x 800 prepared", {600, 800}, 3)};
}

}  // namespace kartix::bench
