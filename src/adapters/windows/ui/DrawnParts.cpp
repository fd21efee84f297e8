#include "adapters/windows/ui/DrawnParts.h"

#include "adapters/windows/ui/CardFace.h"
#include "adapters/windows/ui/Pictures.h"
#include "adapters/windows/ui/Shapes.h"
#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

using Gdiplus::REAL;

/// A text that must fit its place is written no smaller than this.
constexpr double smallestPoints = 6.5;
constexpr double smaller = 0.25;

COLORREF colourRef(std::uint32_t argb) { return RGB(argb >> 16U & 0xFFU, argb >> 8U & 0xFFU, argb & 0xFFU); }

Size sizeOf(const RECT& rect) { return {rect.right - rect.left, rect.bottom - rect.top}; }

void paintFrame(HDC context, Size size, const Style& style) {
  Gdiplus::Graphics graphics(context);
  if (style.background != 0) {
    const Gdiplus::SolidBrush brush{Gdiplus::Color(style.background)};
    graphics.FillRectangle(&brush, 0, 0, size.width, size.height);
  }
  if (style.border != 0) {
    const Gdiplus::Pen pen{Gdiplus::Color(style.border)};
    graphics.DrawRectangle(&pen, 0, 0, size.width - 1, size.height - 1);
  }
}

}  // namespace

DrawnPart::DrawnPart(const Element& element, forms::Control* control, const Look& look, const CardPart* card)
    : Part(element, control, look), card_(card) {
  make(WC_STATICW, SS_OWNERDRAW | WS_CLIPSIBLINGS | (element.tip.empty() ? 0U : SS_NOTIFY));
  // What a screen reader says of it.
  SetWindowTextW(handle(), wide(element.spoken).c_str());
}

void DrawnPart::draw(const DRAWITEMSTRUCT& target) {
  const Size size = sizeOf(target.rcItem);
  const Canvas canvas(target.hDC, size.width, size.height);
  paintGround(canvas.context(), size);
  paintFrame(canvas.context(), size, element().style);
  paint(canvas.context(), size);
  BitBlt(target.hDC, target.rcItem.left, target.rcItem.top, size.width, size.height, canvas.context(), 0, 0, SRCCOPY);
}

void DrawnPart::paintGround(HDC context, Size size) const {
  if (card_) return card_->paintUnder(*this, context, size);
  const RECT all{0, 0, size.width, size.height};
  FillRect(context, &all, GetSysColorBrush(COLOR_3DFACE));
}

CardPart::CardPart(const Element& element, forms::Control* control, const Look& look)
    : DrawnPart(element, control, look, nullptr) {}

/// Drawn once for every size, with the window's own colour around its corners.
const Canvas& CardPart::face(HDC like, Size size) const {
  if (face_ && faceSize_.width == size.width && faceSize_.height == size.height) return *face_;
  face_ = std::make_unique<Canvas>(like, size.width, size.height);
  faceSize_ = size;
  const RECT all{0, 0, size.width, size.height};
  FillRect(face_->context(), &all, GetSysColorBrush(COLOR_3DFACE));
  const int units = element().least.width;
  drawSmooth(face_->context(), size, units, [&](Gdiplus::Graphics& graphics) {
    drawCardFace(graphics, {static_cast<REAL>(units), static_cast<REAL>(units) * static_cast<REAL>(size.height) /
                                                          static_cast<REAL>(size.width)});
  });
  return *face_;
}

void CardPart::paint(HDC context, Size size) {
  BitBlt(context, 0, 0, size.width, size.height, face(context, size).context(), 0, 0, SRCCOPY);
}

void CardPart::paintUnder(const Part& part, HDC context, Size size) const {
  RECT own{};
  RECT above{};
  GetWindowRect(handle(), &own);
  GetWindowRect(part.handle(), &above);
  BitBlt(context, 0, 0, size.width, size.height, face(context, sizeOf(own)).context(), above.left - own.left,
         above.top - own.top, SRCCOPY);
}

void RulePart::paint(HDC context, Size size) {
  const int thickness = look().pixels(1);
  const int top = (size.height - thickness) / 2;
  const RECT line{0, top, size.width, top + thickness};
  const HBRUSH brush = CreateSolidBrush(colourRef(element().style.colour));
  FillRect(context, &line, brush);
  DeleteObject(brush);
}

CardTextPart::CardTextPart(const Element& element, forms::Control* control, const Look& look, const CardPart* card)
    : DrawnPart(element, control, look, card) {}

void CardTextPart::restyle() {
  Part::restyle();
  redraw();
}

void CardTextPart::show() {
  const std::wstring text = wide(content());
  if (text == shown_) return;
  shown_ = text;
  const std::wstring name = wide(element().spoken);
  SetWindowTextW(handle(), name.empty() ? text.c_str() : (name + L": " + text).c_str());
  redraw();
}

Size CardTextPart::natural() const {
  Size size = look().measure(wide(content()), look().font(element().style));
  if (element().shrinks) size.width = 0;
  return {size.width + 1, size.height};
}

HFONT CardTextPart::fittingFont(int room) const {
  if (!element().shrinks) return look().font(element().style);
  double points = Look::usualPoints;
  while (look().measure(*shown_, look().font(points, false)).width > room && points > smallestPoints)
    points -= smaller;
  return look().font(points, false);
}

std::wstring CardTextPart::hidden() const {
  const int room = look().pixels(element().least.width);
  if (!element().shrinks || !shown_ || look().measure(*shown_, fittingFont(room)).width <= room) return {};
  return *shown_;
}

void CardTextPart::paint(HDC context, Size size) {
  if (!shown_) return;
  const HGDIOBJ before = SelectObject(context, fittingFont(size.width));
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, colourRef(element().style.colour));
  UINT how = DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
  if (element().textVertical == Align::centre) how |= DT_VCENTER;
  if (element().textVertical == Align::end) how |= DT_BOTTOM;
  RECT all{0, 0, size.width, size.height};
  DrawTextW(context, shown_->c_str(), static_cast<int>(shown_->size()), &all, how);
  SelectObject(context, before);
}

PicturePart::PicturePart(const Element& element, forms::Picture* control, const Look& look, const CardPart* card)
    : DrawnPart(element, control, look, card), control_(control) {}

void PicturePart::restyle() {
  Part::restyle();
  shown_.clear();
  show();
}

void PicturePart::show() {
  const std::wstring present = control_ && !control_->file().empty() ? stampOf(control_->file()) : std::wstring(L"?");
  if (present == shown_) return;
  shown_ = present;
  load();
  redraw();
}

void PicturePart::load() {
  picture_.reset();
  if (!control_ || control_->file().empty()) return;
  const Size room{look().pixels(element().least.width), look().pixels(element().least.height)};
  picture_ = readPicture(control_->file(), room, element().ink);
}

void PicturePart::paint(HDC context, Size size) {
  constexpr int iconUnits = 100;
  if (!control_ || control_->file().empty()) {
    drawSmooth(context, size, iconUnits, [&](Gdiplus::Graphics& graphics) { drawIcon(graphics, element().drawing); });
    return;
  }
  if (!picture_) return;
  Gdiplus::Graphics graphics(context);
  const int edge = element().style.border != 0 ? 1 : 0;
  graphics.SetClip(Gdiplus::Rect(edge, edge, size.width - 2 * edge, size.height - 2 * edge));
  const auto width = static_cast<int>(picture_->GetWidth());
  const auto height = static_cast<int>(picture_->GetHeight());
  graphics.DrawImage(picture_.get(), (size.width - width) / 2, (size.height - height) / 2, width, height);
}

}  // namespace kartix::adapters::native
