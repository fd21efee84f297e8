#pragma once

#include <cstdint>
#include <string>

namespace kartix::platform {
struct Platform;
}

namespace kartix {

/// An image that was made ready for an order, or why it was not.
struct PreparedImage {
  std::int32_t error = 0;  ///< number in the catalogue; 0 when the image lies ready
  std::string file;        ///< native path of the file that was written
};

/// Photo of the person with the image path `imageDir`: reads ".JP0", writes ".JP2".
PreparedImage preparePhoto(const platform::Platform& machine, const std::string& imageDir);

/// Signature: reads ".JP1", writes ".JP3".
PreparedImage prepareSignature(const platform::Platform& machine, const std::string& imageDir);

}  // namespace kartix
