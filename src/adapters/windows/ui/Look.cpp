#include "adapters/windows/ui/Look.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kartix::adapters::native {
namespace {

constexpr int unitsPerInch = 96;
constexpr int pointsPerInch = 72;

/// The device context of a window for as long as it is measured with.
class Measuring {
 public:
  explicit Measuring(HWND window) : window_(window), context_(GetDC(window)) {}
  ~Measuring() { ReleaseDC(window_, context_); }
  Measuring(const Measuring&) = delete;
  Measuring& operator=(const Measuring&) = delete;
  HDC get() const { return context_; }

 private:
  HWND window_;
  HDC context_;
};

int CALLBACK isThere(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<bool*>(found) = true;
  return 0;
}

bool installed(HDC context, const wchar_t* face) {
  LOGFONTW wanted{};
  wanted.lfCharSet = DEFAULT_CHARSET;
  std::wstring_view(face).copy(wanted.lfFaceName, LF_FACESIZE - 1);
  bool found = false;
  EnumFontFamiliesExW(context, &wanted, isThere, reinterpret_cast<LPARAM>(&found), 0);
  return found;
}

/// Only newer systems have a scale for each screen.
int dpiOf(HWND window) {
  using GetDpi = UINT(WINAPI*)(HWND);
  const auto ask = reinterpret_cast<GetDpi>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  const UINT dpi = ask ? ask(window) : 0;
  if (dpi != 0) return static_cast<int>(dpi);
  return GetDeviceCaps(Measuring(window).get(), LOGPIXELSX);
}

}  // namespace

std::wstring installedFace() {
  const Measuring screen(nullptr);
  for (const wchar_t* face : {L"Verdana", L"DejaVu Sans", L"Tahoma"}) {
    if (installed(screen.get(), face)) return face;
  }
  return std::wstring(fallbackFace);
}

Look::Look(HWND window, const CommonControls& controls)
    : window_(window), controls_(controls), dpi_(dpiOf(window)), face_(installedFace()) {}

bool Look::rescale(int dpi) { return std::exchange(dpi_, dpi) != dpi; }

int Look::pixels(int units) const { return MulDiv(units, dpi_, unitsPerInch); }

HFONT Look::font(double points, bool bold) const {
  const int height = static_cast<int>(std::lround(points * dpi_ / pointsPerInch));
  Font& font = fonts_[{height, bold}];
  if (!font) {
    font.reset(CreateFontW(-height, 0, 0, 0, bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET,
                           OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_SWISS,
                           face_.c_str()));
  }
  return font.get();
}

HFONT Look::font(const Style& style) const { return font(style.points > 0 ? style.points : usualPoints, style.bold); }

int Look::lineHeight() const { return measure(L"Ag", font()).height; }

Size Look::measure(std::wstring_view text, HFONT font, int width) const {
  const Measuring context(window_);
  const HGDIOBJ before = SelectObject(context.get(), font);
  RECT room{0, 0, width, 0};
  const UINT wrap = width == unwrapped ? 0U : DT_WORDBREAK;
  DrawTextW(context.get(), text.data(), static_cast<int>(text.size()), &room, DT_CALCRECT | DT_NOPREFIX | wrap);
  SelectObject(context.get(), before);
  return {room.right, room.bottom};
}

}  // namespace kartix::adapters::native
