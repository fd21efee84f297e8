#pragma once

#include <windows.h>
// Before the header that relies on it.
#include <objidl.h>

#include <algorithm>
// The header wants the macros that a C++ program does without.
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

namespace kartix::adapters::native {

/// The system's library for drawings, for as long as this lives.
class GdiPlus {
 public:
  GdiPlus();
  ~GdiPlus();
  GdiPlus(const GdiPlus&) = delete;
  GdiPlus& operator=(const GdiPlus&) = delete;

 private:
  ULONG_PTR token_ = 0;
};

/// A picture in memory that is drawn first and copied to the screen at once.
class Canvas {
 public:
  Canvas(HDC like, int width, int height);
  ~Canvas();
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC context() const { return context_; }
  HBITMAP bitmap() const { return bitmap_; }

 private:
  HDC context_;
  HBITMAP bitmap_;
  HGDIOBJ before_;
};

}  // namespace kartix::adapters::native
