#include "adapters/windows/ui/GdiPlus.h"

namespace kartix::adapters::native {

GdiPlus::GdiPlus() {
  const Gdiplus::GdiplusStartupInput input;
  if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) token_ = 0;
}

GdiPlus::~GdiPlus() {
  if (token_ != 0) Gdiplus::GdiplusShutdown(token_);
}

Canvas::Canvas(HDC like, int width, int height)
    : context_(CreateCompatibleDC(like)),
      bitmap_(CreateCompatibleBitmap(like, width, height)),
      before_(SelectObject(context_, bitmap_)) {}

Canvas::~Canvas() {
  SelectObject(context_, before_);
  DeleteObject(bitmap_);
  DeleteDC(context_);
}

}  // namespace kartix::adapters::native
