#pragma once

#include <filesystem>

#include "bench/Bureau.h"

namespace kartix::bench {

using test::Json;

/// An order with pictures that leave with about 60 and 20 kB.
struct Orders {
  static Json scenario();

  /// The pictures as the host has made them.
  static void makePictures(const test::Installation& installation);
  /// Scales and writes them once more, beside those of the order.
  static void prepareAgain(const test::Installation& installation);
  /// A picture by the end of its name: "JP0" as made, "JP2" as sent.
  static std::filesystem::path picture(const test::Installation& installation, const char* kind);
};

}  // namespace kartix::bench
