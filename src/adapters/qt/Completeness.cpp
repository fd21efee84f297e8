#include "adapters/qt/Completeness.h"

#include <QtEndian>
#include <string_view>

namespace kartix::adapters::qt {
namespace {

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
    at += qFromBigEndian<quint16>(bytes.data() + at);
  }
  return false;
}

/// Follows the chunks to the last one.
bool pngIsComplete(std::string_view bytes) {
  constexpr std::size_t signature = 8;
  constexpr std::size_t frame = 12;  // length, name and checksum of a chunk
  for (std::size_t at = signature; at + frame <= bytes.size();) {
    const std::size_t next = at + frame + qFromBigEndian<quint32>(bytes.data() + at);
    if (bytes.substr(at + 4, 4) == "IEND") return next <= bytes.size();
    at = next;
  }
  return false;
}

/// Believes the length in the header.
bool bmpIsComplete(std::string_view bytes) {
  constexpr std::size_t length = 2;
  return bytes.size() >= length + 4 && qFromLittleEndian<quint32>(bytes.data() + length) <= bytes.size();
}

}  // namespace

bool isComplete(const QByteArray& format, const QByteArray& bytes) {
  const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (format == "jpeg") return jpegIsComplete(view);
  if (format == "png") return pngIsComplete(view);
  if (format == "bmp") return bmpIsComplete(view);
  return true;
}

}  // namespace kartix::adapters::qt
