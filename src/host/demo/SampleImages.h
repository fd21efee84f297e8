#pragma once

#include <string>

namespace kartix::host {

/// Writes a portrait as a photographer would deliver it (JPEG, upright) to the file (UTF-8). Raises `CommandFailure`.
void writeSamplePhoto(const std::string& file);
/// Writes a signature as a scanner would deliver it (JPEG, wide) to the file (UTF-8). Raises `CommandFailure`.
void writeSampleSignature(const std::string& file);

}  // namespace kartix::host
