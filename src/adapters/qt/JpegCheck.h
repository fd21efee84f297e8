#pragma once

#include <string_view>

namespace kartix::adapters::qt {

/// False when the decoder finds that a JPEG file ends before its picture does, or cannot be decoded at all. Qt passes
/// over that: it gives the picture, with grey in the place of what is missing. Costs as much as decoding it in an
/// eighth of its size.
bool isWholeJpeg(std::string_view bytes);

}  // namespace kartix::adapters::qt
