#include "adapters/images/Completeness.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kartix::adapters::images {
namespace {

std::uint32_t bigEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (const char byte : bytes) number = number << 8U | static_cast<unsigned char>(byte);
  return number;
}

std::uint32_t littleEndian(std::string_view bytes) {
  std::uint32_t number = 0;
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
    number = number << 8U | static_cast<unsigned char>(*byte);
  }
  return number;
}

/// Looks for the end marker. Small previews within segments are passed over with their segments.
bool jpegIsComplete(std::string_view bytes) {
  constexpr char mark = '\xFF';
  constexpr unsigned char restart0 = 0xD0;
  constexpr unsigned char start = 0xD8;
  constexpr unsigned char end = 0xD9;
  std::size_t at = 0;
  while ((at = bytes.find(mark, at)) != std::string_view::npos) {
    at = bytes.find_first_not_of(mark, at);
    if (at == std::string_view::npos) return false;
    const auto code = static_cast<unsigned char>(bytes[at++]);
    if (code == end) return true;
    const bool alone = code <= 1 || (code >= restart0 && code <= start);
    if (alone) continue;
    if (bytes.size() - at < 2) return false;
    at += bigEndian(bytes.substr(at, 2));
  }
  return false;
}

/// Follows the chunks to the last one.
bool pngIsComplete(std::string_view bytes) {
  constexpr std::size_t signature = 8;
  constexpr std::size_t frame = 12;  // length, name and checksum of a chunk
  for (std::size_t at = signature; at + frame <= bytes.size();) {
    const std::size_t next = at + frame + bigEndian(bytes.substr(at, 4));
    if (bytes.substr(at + 4, 4) == "IEND") return next <= bytes.size();
    at = next;
  }
  return false;
}

/// Believes the length in the header.
bool bmpIsComplete(std::string_view bytes) {
  constexpr std::size_t length = 2;
  return bytes.size() >= length + 4 && littleEndian(bytes.substr(length, 4)) <= bytes.size();
}

}  // namespace

bool isComplete(std::string_view format, std::string_view bytes) {
  if (format == "jpeg") return jpegIsComplete(bytes);
  if (format == "png") return pngIsComplete(bytes);
  if (format == "bmp") return bmpIsComplete(bytes);
  return true;
}

}  // namespace kartix::adapters::images
