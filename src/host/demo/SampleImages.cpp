#include "host/demo/SampleImages.h"

#include <filesystem>
#include <fstream>
#include <span>

#include "common/Paths.h"
#include "host/Command.h"

// The files in images/, made part of the program when it is built.
namespace kartix::embedded {
extern const std::span<const unsigned char> samplePhoto;
extern const std::span<const unsigned char> sampleSignature;
}  // namespace kartix::embedded

namespace kartix::host {
namespace {

void write(std::span<const unsigned char> image, const std::string& file) {
  std::ofstream out(pathOf(file), std::ios::binary);
  for (const unsigned char byte : image) out.put(static_cast<char>(byte));
  if (!out.flush()) throw CommandFailure(file + ": cannot be written");
}

}  // namespace

void writeSamplePhoto(const std::string& file) { write(embedded::samplePhoto, file); }
void writeSampleSignature(const std::string& file) { write(embedded::sampleSignature, file); }

}  // namespace kartix::host
