#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <QImageReader>
#include <array>
#include <memory>
#include <vector>

#include "adapters/qt/Qt.h"
#include "adapters/qt/Resampling.h"
#include "bench/Bureau.h"
#include "bench/Targets.h"
#include "images/Photograph.h"

namespace kartix::bench {
namespace {

constexpr int height = 490;

struct Photo {
  explicit Photo(QSize size) : picture(test::photograph(size)) {
    picture.save(QString::fromStdString(file), "jpeg", 92);
  }

  QImage picture;
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

/// Qt scales with as many threads as there are processors.
Target compareOfProcess(const std::string& what, std::function<bool()> component, const std::string& library,
                        std::function<bool()> bare, double most) {
  return {what + ", to plain " + library,
          {addOfProcess(what + ", component", std::move(component))},
          {addOfProcess(what + ", " + library, std::move(bare))},
          most};
}

Target photoTarget(const std::string& what, QSize size, double most) {
  const auto photo = later<Photo>(size);
  return compareOfProcess(
      what, [photo] { return prepared(photo()); }, "Qt", [photo] { return plain(photo()); }, most);
}

/// Seconds that the processor has spent on a program; negative when it has failed.
double programSeconds(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  int end = 0;
  rusage used{};
  if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) return -1;
  if (wait4(child, &end, 0, &used) != child || end != 0) return -1;
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(used.ru_utime) + seconds(used.ru_stime);
}

/// What a program takes for a photo, without what it takes for its own start.
struct Program {
  std::string name;
  std::vector<std::string> (*words)(const Photo&);

  double seconds(const Photo& photo, const Photo& speck) const {
    const double whole = programSeconds(words(photo));
    const double start = programSeconds(words(speck));
    return whole < 0 || start < 0 ? -1 : std::max(0.0, whole - start);
  }
};

const std::array<Program, 2> programs = {
    {{"ImageMagick",
      [](const Photo& photo) {
        return std::vector<std::string>{"convert", photo.file, "-auto-orient", "-resize",
                                        "x490",    "-quality", "90",           "jpeg:" + photo.target};
      }},
     {"libvips", [](const Photo& photo) {
        return std::vector<std::string>{"vipsthumbnail", photo.file, "--size",
                                        "x490",          "-o",       photo.target + ".jpg[Q=90]"};
      }}}};

std::vector<Target> programTargets() {
  const auto photo = later<Photo>(QSize(3000, 4000));
  const auto speck = later<Photo>(QSize(8, 8));
  std::vector<Target> targets;
  for (const auto& [program, most] : {std::pair(&programs[0], 0.5), std::pair(&programs[1], 1.2)}) {
    targets.push_back(compareInTurns(
        "photo of 12 megapixels prepared by " + program->name,
        [photo] { return secondsOf([&] { return prepared(photo()); }); }, program->name,
        [photo, speck, program = program] { return program->seconds(photo(), speck()); }, most));
  }
  return targets;
}

/// Scaling alone, of pictures that are in memory already.
Target resamplingTarget() {
  const auto image = later<Photo>(QSize(600, 800));
  const QSize target(height * 600 / 800, height);
  return compareOfProcess(
      "resampling of 600 x 800",
      [image, target] {
        return !adapters::qt::resample(image().picture, {image().picture.size(), {}, 0}, target).isNull();
      },
      "Qt",
      [image, target] {
        return !image().picture.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).isNull();
      },
      1.5);
}

}  // namespace

/// The filter for print takes in more pixels than Qt's own; a large photo makes up for it, being decoded at a reduced
/// scale.
std::vector<Target> imageTargets() {
  std::vector<Target> targets = {photoTarget("photo of 12 megapixels prepared", {3000, 4000}, 1), resamplingTarget()};
  for (Target& target : programTargets()) targets.push_back(std::move(target));
  return targets;
}

}  // namespace kartix::bench
