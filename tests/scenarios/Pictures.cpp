#include "scenarios/Pictures.h"

#include <openssl/evp.h>

#include <cstdio>

#include "scenarios/Scenario.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

std::string littleEndian(std::size_t value, int bytes) {
  std::string text;
  for (; bytes > 0; --bytes, value >>= 8U) text += static_cast<char>(value & 0xFFU);
  return text;
}

/// One bit a pixel.
std::string blackBitmap(std::size_t width, std::size_t height) {
  constexpr std::size_t head = 62;
  const std::size_t pixels = (width + 31) / 32 * 4 * height;
  return "BM" + littleEndian(head + pixels, 4) + littleEndian(0, 4) + littleEndian(head, 4) + littleEndian(40, 4) +
         littleEndian(width, 4) + littleEndian(height, 4) + littleEndian(1, 2) + littleEndian(1, 2) +
         littleEndian(0, 4) + littleEndian(pixels, 4) + littleEndian(0, 16) + littleEndian(0, 4) +
         littleEndian(0xFFFFFF, 4) + std::string(pixels, '\0');
}

std::string bigEndianPair(const std::string& bytes, std::size_t at) {
  const auto number = [&](std::size_t i) {
    return static_cast<unsigned char>(bytes[i]) * 256 + static_cast<unsigned char>(bytes[i + 1]);
  };
  return std::to_string(number(at)) + "x" + std::to_string(number(at + 2));
}

}  // namespace

void makePicture(const std::filesystem::path& file, const std::string& description) {
  std::filesystem::create_directories(file.parent_path());
  if (description == "directory") {
    std::filesystem::create_directory(file);
    return;
  }
  unsigned width = 0;
  unsigned height = 0;
  if (std::sscanf(description.c_str(), "%ux%u", &width, &height) != 2) {
    throw BadScenario("no picture: " + description);
  }
  std::string bytes = blackBitmap(width, height);
  if (description.ends_with(" broken off")) bytes.resize(bytes.size() / 2);
  writeBytes(file, bytes);
}

std::string describePicture(const std::filesystem::path& file) {
  const std::string bytes = readBytes(file);
  constexpr std::size_t density = 14;  // in a JFIF head, per inch
  const auto frame = bytes.find(std::string("\xFF\xC0\x00", 3));
  if (!bytes.starts_with("\xFF\xD8\xFF\xE0") || frame == std::string::npos || frame + 9 > bytes.size()) return {};
  std::string turned = bytes.substr(frame + 7, 2) + bytes.substr(frame + 5, 2);  // stored as height, width
  return bigEndianPair(turned, 0) + " at " + bigEndianPair(bytes, density);
}

std::string base64Of(const std::filesystem::path& file) {
  const std::string bytes = readBytes(file);
  std::string text(bytes.size() / 3 * 4 + 5, '\0');
  const int size =
      EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                      reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
  text.resize(static_cast<std::size_t>(size));
  return text;
}

}  // namespace kartix::test
