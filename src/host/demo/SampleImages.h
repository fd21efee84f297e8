#pragma once

#include <string>

namespace kartix::host {

/// Draws a portrait as a photographer would deliver it (JPEG, upright). Raises `CommandFailure`.
void drawSamplePhoto(const std::string& file);
/// Draws a signature as a scanner would deliver it (JPEG, wide). Raises `CommandFailure`.
void drawSampleSignature(const std::string& file);

}  // namespace kartix::host
