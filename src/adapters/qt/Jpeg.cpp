#include "adapters/qt/Jpeg.h"

#include <jerror.h>
#include <jpeglib.h>

#include <QColorSpace>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>

namespace kartix::adapters::qt {
namespace {

/// What the decoder has to say of one file. It finds this by its first member.
struct Report {
  jpeg_error_mgr manager;
  std::jmp_buf giveUp;
  bool brokenOff;
};

Report& reportOf(j_common_ptr decoder) { return *reinterpret_cast<Report*>(decoder->err); }

void onMessage(j_common_ptr decoder, int level) {
  const int code = decoder->err->msg_code;
  const bool warning = level < 0;
  if (warning && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER)) reportOf(decoder).brokenOff = true;
}

void onError(j_common_ptr decoder) { std::longjmp(reportOf(decoder).giveUp, 1); }

void sayNothing(j_common_ptr /*decoder*/) {}

/// A decoder at work, until the end of the object. It leaves its functions by a jump, so nothing that is made between
/// `setjmp` and there may have a destructor.
class Decoder {
 public:
  Decoder() {
    decoder_.err = jpeg_std_error(&report_.manager);
    report_.manager.emit_message = onMessage;
    report_.manager.error_exit = onError;
    report_.manager.output_message = sayNothing;
  }
  ~Decoder() { jpeg_destroy_decompress(&decoder_); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// Reads what stands before the picture: then size and kind of its pixels are known.
  bool begin(std::string_view bytes, int step) {
    constexpr unsigned longestMarker = 0xFFFF;
    if (setjmp(report_.giveUp) != 0) return false;
    jpeg_create_decompress(&decoder_);
    jpeg_save_markers(&decoder_, JPEG_APP0 + 2, longestMarker);
    jpeg_mem_src(&decoder_, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
    jpeg_read_header(&decoder_, TRUE);
    decoder_.scale_num = 1;
    decoder_.scale_denom = static_cast<unsigned>(step);
    const int values = decoder_.num_components;
    decoder_.out_color_space = values == 1 ? JCS_GRAYSCALE : values == 4 ? JCS_CMYK : JCS_EXT_BGRA;
    jpeg_start_decompress(&decoder_);
    return values == 1 || values == 3 || values == 4;
  }

  QSize size() const { return {static_cast<int>(decoder_.output_width), static_cast<int>(decoder_.output_height)}; }
  bool grey() const { return decoder_.out_color_space == JCS_GRAYSCALE; }
  bool printColours() const { return decoder_.out_color_space == JCS_CMYK; }

  /// Fills the rows of a picture of `size`, four bytes a pixel, or one of a grey one. False when the file ends
  /// before.
  bool read(uchar* bytes, qsizetype stride) {
    if (setjmp(report_.giveUp) != 0) return false;
    while (decoder_.output_scanline < decoder_.output_height && !report_.brokenOff) {
      JSAMPROW row = bytes + stride * decoder_.output_scanline;
      jpeg_read_scanlines(&decoder_, &row, 1);
    }
    return !report_.brokenOff;
  }

  /// Empty where the file holds none.
  QByteArray colourProfile() {
    JOCTET* profile = nullptr;
    unsigned size = 0;
    if (setjmp(report_.giveUp) != 0 || jpeg_read_icc_profile(&decoder_, &profile, &size) == FALSE) return {};
    QByteArray bytes(reinterpret_cast<const char*>(profile), static_cast<qsizetype>(size));
    std::free(profile);
    return bytes;
  }

 private:
  Report report_{};
  jpeg_decompress_struct decoder_{};
};

/// From the colours of print as cameras and editors store them, where 255 stands for no ink.
void mixInks(QImage& pixels) {
  constexpr int none = 255;
  for (int y = 0; y < pixels.height(); ++y) {
    uchar* pixel = pixels.scanLine(y);
    for (int x = 0; x < pixels.width(); ++x, pixel += 4) {
      const auto mixed = [&](int ink) { return pixel[ink] * pixel[3] / none; };
      *reinterpret_cast<QRgb*>(pixel) = qRgb(mixed(0), mixed(1), mixed(2));
    }
  }
}

}  // namespace

QImage readJpeg(std::string_view bytes, int step) {
  Decoder decoder;
  if (!decoder.begin(bytes, step)) return {};
  QImage pixels(decoder.size(), decoder.grey() ? QImage::Format_Grayscale8 : QImage::Format_RGB32);
  if (pixels.isNull() || !decoder.read(pixels.bits(), pixels.bytesPerLine())) return {};
  if (decoder.printColours()) mixInks(pixels);
  const QByteArray profile = decoder.colourProfile();
  if (!profile.isEmpty()) pixels.setColorSpace(QColorSpace::fromIccProfile(profile));
  return pixels;
}

}  // namespace kartix::adapters::qt
