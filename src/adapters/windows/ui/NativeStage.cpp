#include <map>
#include <memory>
#include <utility>

#include "adapters/windows/ui/Messages.h"
#include "adapters/windows/ui/NativeUi.h"
#include "adapters/windows/ui/Pictures.h"
#include "adapters/windows/ui/Text16.h"
#include "adapters/windows/ui/Window.h"

namespace kartix::adapters {
namespace {

/// How long a window may take to appear on the desktop.
constexpr ULONGLONG appearsWithinMs = 1000;

constexpr int barUnits = 30;
constexpr int marginUnits = 12;
constexpr COLORREF barColour = RGB(0x3b, 0x4a, 0x5a);

class StageWindow {
 public:
  explicit StageWindow(forms::Form& form) : form_(form), window_(form, GetActiveWindow(), never_) {
    window_.onPainted = [this] { painted_ = true; };
  }

  native::Window& window() { return window_; }
  bool painted() const { return painted_; }

  /// The window under a title bar of the same look on every desktop.
  bool savePicture(const std::string& png) const {
    RECT inside{};
    GetClientRect(window_.handle(), &inside);
    const native::Look look(window_.handle(), controls_);
    const int bar = look.pixels(barUnits);
    const HDC screen = GetDC(window_.handle());
    const native::Canvas picture(screen, inside.right + 2, inside.bottom + bar + 1);
    drawBar(picture.context(), look, {0, 0, inside.right + 2, inside.bottom + bar + 1});
    const bool copied =
        BitBlt(picture.context(), 1, bar, inside.right, inside.bottom, screen, 0, 0, SRCCOPY) != FALSE;
    ReleaseDC(window_.handle(), screen);
    return copied && native::writePng(picture.bitmap(), png);
  }

 private:
  void drawBar(HDC context, const native::Look& look, const RECT& all) const {
    const HBRUSH brush = CreateSolidBrush(barColour);
    FillRect(context, &all, brush);
    DeleteObject(brush);
    const HGDIOBJ before = SelectObject(context, look.font(native::Look::usualPoints, true));
    SetBkMode(context, TRANSPARENT);
    SetTextColor(context, RGB(0xff, 0xff, 0xff));
    const int bar = look.pixels(barUnits);
    RECT text{look.pixels(marginUnits), 0, all.right - bar - look.pixels(marginUnits), bar};
    DrawTextW(context, native::wide(form_.caption()).c_str(), -1, &text,
              DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(context, before);
    drawCross(context, look, all.right - bar / 2, bar / 2);
  }

  static void drawCross(HDC context, const native::Look& look, int x, int y) {
    const auto arm = static_cast<Gdiplus::REAL>(look.pixels(9)) / 2;
    Gdiplus::Graphics graphics(context);
    graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
    const Gdiplus::Pen pen(Gdiplus::Color(0xff, 0xff, 0xff), static_cast<Gdiplus::REAL>(look.pixels(16)) / 10);
    const auto left = static_cast<Gdiplus::REAL>(x) - arm;
    const auto top = static_cast<Gdiplus::REAL>(y) - arm;
    graphics.DrawLine(&pen, left, top, left + 2 * arm, top + 2 * arm);
    graphics.DrawLine(&pen, left, top + 2 * arm, left + 2 * arm, top);
  }

  static constexpr bool never_ = false;
  forms::Form& form_;
  native::CommonControls controls_;
  native::Window window_;
  bool painted_ = false;
};

class NativeStage final : public platform::Stage {
 public:
  bool onScreen() const override { return native::desktopIsVisible(); }

  void show(forms::Form& form) override {
    if (!native::desktopIsVisible() || windows_.count(&form) != 0) return;
    auto stage = std::make_unique<StageWindow>(form);
    if (!stage->window().made()) return;
    stage->window().centre();
    stage->window().show(false);
    const ULONGLONG began = GetTickCount64();
    do native::dispatchWithoutInput();
    while (!stage->painted() && GetTickCount64() - began < appearsWithinMs);
    windows_.emplace(&form, std::move(stage));
  }

  void update(forms::Form& form) override {
    const auto found = windows_.find(&form);
    if (found == windows_.end()) return;
    found->second->window().mirrorAll();
    native::dispatchWithoutInput();
    found->second->window().paintNow();
  }

  void hide(forms::Form& form) override {
    if (windows_.erase(&form) != 0) native::dispatchWithoutInput();
  }

  bool savePicture(forms::Form& form, const std::string& png) override {
    const auto found = windows_.find(&form);
    return found != windows_.end() && found->second->savePicture(png);
  }

 private:
  std::map<const forms::Form*, std::unique_ptr<StageWindow>> windows_;
};

}  // namespace

std::unique_ptr<platform::Stage> makeNativeStage() { return std::make_unique<NativeStage>(); }

}  // namespace kartix::adapters
