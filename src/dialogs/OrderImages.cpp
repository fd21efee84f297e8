#include "dialogs/OrderImages.h"

#include <exception>
#include <memory>

#include "dialogs/ImageRules.h"
#include "platform/FileSystem.h"
#include "platform/ImageLibrary.h"
#include "platform/Platform.h"

namespace kartix {
namespace {

constexpr int dotsPerInch = 500;
constexpr std::uint32_t white = 0xFFFFFF;

/// Where an image comes from, where it goes, and the errors of its steps.
struct Preparation {
  const char* source;
  const char* target;      ///< as it is written
  const char* sentTarget;  ///< as the message names it
  std::int32_t unreadable;
  std::int32_t unusable;
  std::int32_t unwritable;
  bool (*shape)(platform::Image& image);
};

bool shapePhoto(platform::Image& image) {
  const auto height = image_rules::photoHeight(image.width(), image.height());
  return height && image.resize(0, *height);
}

bool shapeSignature(platform::Image& image) {
  if (const auto canvas = image_rules::signatureCanvas(image.width(), image.height())) {
    if (!image.enlargeCanvas(canvas->width, canvas->height, canvas->x, canvas->y, white)) return false;
  }
  const auto width = image_rules::signatureWidth(image.width(), image.height());
  return width && image.resize(*width, 0);
}

std::unique_ptr<platform::Image> load(const platform::Platform& machine, const std::string& path) {
  const auto file = machine.files.findFile(path);
  return file ? machine.images.load(*file) : nullptr;
}

/// What is written must be what is sent, also where a file of that name in another case lies there already.
std::string targetFile(const platform::Platform& machine, const std::string& imageDir, const Preparation& how) {
  if (auto existing = machine.files.findFile(imageDir + how.sentTarget)) return *existing;
  return machine.files.nativePath(imageDir + how.target);
}

PreparedImage prepare(const platform::Platform& machine, const std::string& imageDir, const Preparation& how) {
  PreparedImage prepared{.error = how.unreadable, .file = {}};
  try {
    const auto image = load(machine, imageDir + how.source);
    if (!image) return prepared;
    prepared.error = how.unusable;
    if (!how.shape(*image)) return prepared;
    image->setResolution(dotsPerInch, dotsPerInch);
    prepared.error = how.unwritable;
    prepared.file = targetFile(machine, imageDir, how);
    // Something else under the name that is sent would leave the order without its image.
    if (image->save(prepared.file) && machine.files.findFile(imageDir + how.sentTarget)) prepared.error = 0;
  } catch (const std::exception&) {
    // The number of the step that failed says it.
  }
  return prepared;
}

}  // namespace

PreparedImage preparePhoto(const platform::Platform& machine, const std::string& imageDir) {
  return prepare(machine, imageDir, {".JP0", ".JP2", ".jp2", 2001, 2002, 2003, shapePhoto});
}

PreparedImage prepareSignature(const platform::Platform& machine, const std::string& imageDir) {
  return prepare(machine, imageDir, {".JP1", ".JP3", ".jp3", 2004, 2005, 2006, shapeSignature});
}

}  // namespace kartix
