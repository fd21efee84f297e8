#pragma once

#include <QImage>
#include <string_view>

namespace kartix::adapters::qt {

/// A JPEG file's picture as Grayscale8 or RGB32, with the colour space that the file names. One pixel stands for
/// `step` (1, 2, 4 or 8) by `step` pixels of the whole, at no more than the cost of those. Null when the file ends
/// before its picture does, or cannot be decoded: the reader of Qt would pass over that, and give grey in the place
/// of what is missing.
QImage readJpeg(std::string_view bytes, int step);

}  // namespace kartix::adapters::qt
