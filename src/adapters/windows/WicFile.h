#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "adapters/images/Resampling.h"

namespace kartix::adapters::windows {

/// Pixels in memory, grey (one channel) or blue, green, red and one that counts for nothing (four).
struct Pixels {
  Pixels(int wide, int high, int parts);

  images::View view() const;
  images::Target target();

  int width;
  int height;
  int channels;
  std::vector<std::uint8_t> bytes;
};

/// A picture as its file holds it.
struct WicFile {
  int width = 0;  ///< as stored, before it is turned
  int height = 0;
  int orientation = 1;  ///< 1 to 8, as cameras count them
  std::string bytes;

  /// Reads a JPEG, PNG, BMP or TIFF file (UTF-8) of at most 64 MiB. Nothing when it is anything else, or broken off.
  static std::optional<WicFile> read(const std::string& file);
  /// Its pixels, on white where it is transparent. Nothing when they cannot be decoded.
  std::optional<Pixels> decode() const;
};

/// A baseline JPEG of quality 90 with the resolution given, 0 for none. Nothing when it cannot be made.
std::optional<std::string> encodeJpeg(const Pixels& pixels, int horizontal, int vertical);

}  // namespace kartix::adapters::windows
