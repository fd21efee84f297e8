#pragma once

#include <cstddef>
#include <cstdint>

namespace kartix::adapters::images {

/// Rows of pixels in memory: grey bytes (`channels` 1), or blue, green, red and one that counts for nothing (4).
template <class Byte>
struct Rows {
  Byte* bytes = nullptr;
  std::ptrdiff_t stride = 0;  ///< bytes from one row to the next
  int width = 0;
  int height = 0;
  int channels = 4;

  Byte* row(int y) const { return bytes + y * stride; }
};
using View = Rows<const std::uint8_t>;
using Target = Rows<std::uint8_t>;

/// Canvas on which a picture lies, in pixels of the picture. What the picture leaves free has the colour `around`,
/// 0xRRGGBB; around a grey picture its blue counts.
struct Canvas {
  double width = 0;
  double height = 0;
  double x = 0;
  double y = 0;
  std::uint32_t around = 0xffffff;
};

/// Fills `result`, which has the channels of `picture`, with the canvas and `picture` on it, through a Lanczos filter
/// with three lobes: sharp enough for print, and free of moiré however much it reduces. Raises `std::bad_alloc`.
void resample(const View& picture, const Canvas& canvas, const Target& result);

}  // namespace kartix::adapters::images
