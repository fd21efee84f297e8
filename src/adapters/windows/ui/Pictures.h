#pragma once

#include <memory>
#include <string>

#include "adapters/windows/ui/Design.h"
#include "adapters/windows/ui/GdiPlus.h"

namespace kartix::adapters::native {

/// The image in the file `name` (UTF-8), turned as it says and scaled to fit `room`; with `ink`, only what is dark of
/// it. Its format is found by its content. Nothing when it is missing, too large or no image.
std::unique_ptr<Gdiplus::Bitmap> readPicture(const std::string& name, Size room, bool ink);

/// Tells one content of a file from another that is written under the same name.
std::wstring stampOf(const std::string& name);

/// Writes a PNG to the file `name` (UTF-8). False when it was not written.
bool writePng(HBITMAP bitmap, const std::string& name);

}  // namespace kartix::adapters::native
