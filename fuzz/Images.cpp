#include "Installation.h"
#include "adapters/files/Files.h"
#include "adapters/qt/Qt.h"
#include "adapters/sqlite/Sqlite.h"
#include "dialogs/ImageRules.h"
#include "dialogs/OrderImages.h"
#include "support/Files.h"
#include "support/TestMachine.h"

namespace kartix::fuzz {

/// Whatever lies where photo and signature should.
void images(Input input) {
  static test::TestMachine machine(adapters::makeSqliteDbe());
  static const auto files = adapters::makeFiles();
  static const auto library = adapters::makeQtImages();
  const platform::Platform parts{*machine.registry, *machine.files, *files,       *machine.dbe,
                                 machine.idle,      machine.idle,   *library,     machine.idle,
                                 machine.idle,      machine.idle,   machine.clock};
  const std::string base = directory() / "4711";
  for (const char* const kind : {".JP2", ".JP3"}) std::filesystem::remove(base + kind);
  for (const char* const kind : {".JP0", ".JP1"}) test::writeBytes(base + kind, std::string(input.rest()));
  const PreparedImage photo = preparePhoto(parts, base);
  const PreparedImage signature = prepareSignature(parts, base);
  const auto source = library->load(base + ".JP0");
  if (!source) return expect(photo.error == 2001 && signature.error == 2004, "what is no picture is told");
  expect(source->width() > 0 && source->height() > 0, "a picture has a size");
  const auto written = [&](const PreparedImage& made) {
    auto image = library->load(made.file);
    expect(image != nullptr, "what was made is a picture");
    return image;
  };
  if (photo.error == 0) {
    const auto height = image_rules::photoHeight(source->width(), source->height());
    expect(written(photo)->height() == height, "a photo is as high as it has to be");
  }
  if (signature.error == 0) expect(written(signature)->width() <= 740, "a signature is not wider than it may be");
}

}  // namespace kartix::fuzz
