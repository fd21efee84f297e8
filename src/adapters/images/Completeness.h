#pragma once

#include <string_view>

namespace kartix::adapters::images {

/// Whether the file `bytes` of `format` ("jpeg", "png" or "bmp") goes on to its end. Decoders fill up with grey or
/// black what is missing. What follows the end is of no interest. Of any other format nothing is known: true.
bool isComplete(std::string_view format, std::string_view bytes);

}  // namespace kartix::adapters::images
