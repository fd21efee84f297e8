#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace kartix::platform {

/// A picture in memory. Sizes are in pixels, as a person sees the picture (turned as its file says).
class Image {
 public:
  virtual ~Image() = default;

  virtual int width() const = 0;
  virtual int height() const = 0;

  /// Gives the picture a canvas of `width` by `height`, with the old picture at (`x`, `y`) and `rgb` (0xRRGGBB)
  /// around it. False when it cannot be done.
  virtual bool enlargeCanvas(int width, int height, int x, int y, std::uint32_t rgb) = 0;

  /// Scales to `width` by `height`; a side of 0 follows in proportion. False when it cannot be done.
  virtual bool resize(int width, int height) = 0;

  /// Resolution in dots per inch that goes into the file.
  virtual void setResolution(int horizontal, int vertical) = 0;

  /// Writes a baseline JPEG, 8 bits a channel, to the native path `file`, in one step: a failed write leaves what
  /// was there. False when it was not written.
  virtual bool save(const std::string& file) = 0;
};

class ImageLibrary {
 public:
  virtual ~ImageLibrary() = default;

  /// The picture in the native path `file`; its format is found by its content. Nothing when the file is missing, no
  /// regular file, larger than 64 MiB, no picture, or broken off. A picture of more than 100 megapixels loads, but
  /// cannot be resized or enlarged.
  virtual std::unique_ptr<Image> load(const std::string& file) = 0;
};

}  // namespace kartix::platform
