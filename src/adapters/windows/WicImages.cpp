#include <algorithm>
#include <optional>
#include <utility>

#include "adapters/images/Resampling.h"
#include "adapters/windows/System.h"
#include "adapters/windows/WholeFile.h"
#include "adapters/windows/WicFile.h"
#include "adapters/windows/Windows.h"

namespace kartix::adapters {
namespace {

using windows::Pixels;
using windows::WicFile;

/// Pictures with more pixels are not worked upon.
constexpr std::int64_t mostPixels = 100'000'000;

bool workable(int width, int height) {
  return width >= 1 && height >= 1 && std::int64_t{width} * height <= mostPixels;
}

/// The other side of `known` in proportion.
int inProportion(int known, int ofSide, int otherSide) {
  constexpr double most = mostPixels + 1.0;
  const double side = static_cast<double>(known) * otherSide / ofSide;
  return std::max(1, static_cast<int>(std::min(side + 0.5, most)));
}

/// `stored` as a person sees it; `orientation` is 1 to 8, as cameras count the ways in which they were held.
Pixels upright(const Pixels& stored, int orientation) {
  const bool across = orientation >= 5;
  Pixels seen(across ? stored.height : stored.width, across ? stored.width : stored.height, stored.channels);
  const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool fromBelow = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
  const auto from = stored.view();
  const auto to = seen.target();
  for (int y = 0; y < seen.height; ++y) {
    for (int x = 0; x < seen.width; ++x) {
      const int column = across ? y : x;
      const int row = across ? x : y;
      const int sourceX = fromRight ? stored.width - 1 - column : column;
      const int sourceY = fromBelow ? stored.height - 1 - row : row;
      std::copy_n(from.row(sourceY) + std::ptrdiff_t{sourceX} * stored.channels, stored.channels,
                  to.row(y) + std::ptrdiff_t{x} * stored.channels);
    }
  }
  return seen;
}

/// Canvas and scale are remembered until the picture is needed: then its file is decoded.
class WicImage final : public platform::Image {
 public:
  explicit WicImage(WicFile file)
      : file_(std::move(file)),
        width_(file_.orientation >= 5 ? file_.height : file_.width),
        height_(file_.orientation >= 5 ? file_.width : file_.height) {}

  int width() const override { return width_; }
  int height() const override { return height_; }

  bool enlargeCanvas(int width, int height, int x, int y, std::uint32_t rgb) override {
    const bool fits = x >= 0 && y >= 0 && x <= width - width_ && y <= height - height_;
    if (!fits || !workable(width, height) || !workable(width_, height_)) return false;
    if (placed_ && !make(width_, height_)) return false;
    canvas_ = {static_cast<double>(width), static_cast<double>(height), static_cast<double>(x),
               static_cast<double>(y), rgb};
    width_ = width;
    height_ = height;
    placed_ = true;
    return true;
  }

  bool resize(int width, int height) override {
    if (width < 0 || height < 0 || (width == 0 && height == 0)) return false;
    if (width == 0) width = inProportion(height, height_, width_);
    if (height == 0) height = inProportion(width, width_, height_);
    return workable(width_, height_) && workable(width, height) && make(width, height);
  }

  void setResolution(int horizontal, int vertical) override {
    horizontal_ = horizontal;
    vertical_ = vertical;
  }

  bool save(const std::string& file) override {
    const bool ready = made_ && !placed_;
    if (!ready && !(workable(width_, height_) && make(width_, height_))) return false;
    const auto bytes = windows::encodeJpeg(*made_, horizontal_, vertical_);
    return bytes && windows::replaceWholeFile(file, *bytes);
  }

 private:
  /// Makes an upright picture of that size, with its canvas, that is kept in memory.
  bool make(int width, int height) {
    if (!made_) {
      const auto stored = file_.decode();
      if (!stored) return false;
      made_ = upright(*stored, file_.orientation);
      file_.bytes.clear();
    }
    if (!placed_) canvas_ = {static_cast<double>(width_), static_cast<double>(height_), 0, 0, 0};
    Pixels result(width, height, made_->channels);
    images::resample(made_->view(), canvas_, result.target());
    made_ = std::move(result);
    width_ = width;
    height_ = height;
    placed_ = false;
    return true;
  }

  WicFile file_;
  int width_;
  int height_;
  images::Canvas canvas_;
  bool placed_ = false;         ///< the picture lies on `canvas_`, and is still to be put there
  std::optional<Pixels> made_;  ///< upright, in memory
  int horizontal_ = 0;
  int vertical_ = 0;
};

class WicImages final : public platform::ImageLibrary {
 public:
  std::unique_ptr<platform::Image> load(const std::string& file) override {
    auto read = WicFile::read(file);
    if (!read) return nullptr;
    return std::make_unique<WicImage>(std::move(*read));
  }
};

}  // namespace

std::unique_ptr<platform::ImageLibrary> makeWicImages() { return std::make_unique<WicImages>(); }

}  // namespace kartix::adapters
