#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "adapters/windows/ui/CommonControls.h"
#include "adapters/windows/ui/Design.h"

namespace kartix::adapters::native {

/// Length of a text's lines where it is not wrapped.
inline constexpr int unwrapped = 0;

/// What all controls of a window share: its font and the size of everything on its screen.
class Look {
 public:
  Look(HWND window, const CommonControls& controls);

  HWND window() const { return window_; }
  const CommonControls& controls() const { return controls_; }
  int dpi() const { return dpi_; }
  /// True when the screen's scale has become another one.
  bool rescale(int dpi);
  /// `units` of the design in pixels.
  int pixels(int units) const;

  /// The window's font, or the same in another size.
  HFONT font() const { return font(usualPoints, false); }
  HFONT font(double points, bool bold) const;
  HFONT font(const Style& style) const;
  static constexpr double usualPoints = 9;

  /// Height of a line in the window's font, and the room that `text` takes.
  int lineHeight() const;
  Size measure(std::wstring_view text, HFONT font, int width = unwrapped) const;

 private:
  struct FreeFont {
    void operator()(HFONT font) const { DeleteObject(font); }
  };
  using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FreeFont>;

  HWND window_;
  const CommonControls& controls_;
  int dpi_;
  std::wstring face_;
  mutable std::map<std::pair<int, bool>, Font> fonts_;
};

/// The font of the designs, or what takes its place where it is not installed.
std::wstring installedFace();
/// The last of them: the one that the system draws its own dialogs in, for which the windows are not laid out.
inline constexpr std::wstring_view fallbackFace = L"MS Shell Dlg 2";

}  // namespace kartix::adapters::native
