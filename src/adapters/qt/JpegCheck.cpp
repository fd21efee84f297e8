#include "adapters/qt/JpegCheck.h"

#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdio>

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

/// Nothing here has a destructor: the decoder leaves its functions by a jump.
bool decodeAll(jpeg_decompress_struct& decoder, Report& report, std::string_view bytes) {
  if (setjmp(report.giveUp) != 0) return false;
  jpeg_create_decompress(&decoder);
  jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
  jpeg_read_header(&decoder, TRUE);
  constexpr unsigned smallest = 8;
  decoder.scale_num = 1;
  decoder.scale_denom = smallest;
  jpeg_start_decompress(&decoder);
  const JDIMENSION width = decoder.output_width * static_cast<JDIMENSION>(decoder.output_components);
  JSAMPARRAY row = decoder.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&decoder), JPOOL_IMAGE, width, 1);
  while (decoder.output_scanline < decoder.output_height && !report.brokenOff) jpeg_read_scanlines(&decoder, row, 1);
  return !report.brokenOff;
}

}  // namespace

bool isWholeJpeg(std::string_view bytes) {
  Report report{};
  jpeg_decompress_struct decoder{};
  decoder.err = jpeg_std_error(&report.manager);
  report.manager.emit_message = onMessage;
  report.manager.error_exit = onError;
  report.manager.output_message = sayNothing;
  const bool whole = decodeAll(decoder, report, bytes);
  jpeg_destroy_decompress(&decoder);
  return whole;
}

}  // namespace kartix::adapters::qt
