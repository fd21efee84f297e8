#include "adapters/windows/ui/TextParts.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "adapters/frontend/KeyFilter.h"
#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

/// Widths between which the lines of a message are wrapped, and the height beyond which it is scrolled.
constexpr int narrowest = 240;
constexpr int widest = 520;
constexpr int highest = 420;

/// What is left free above and below a line. The field writes at its upper edge, so it is little.
constexpr int aroundLine = 4;

/// The size of a field of several lines, where the design does not limit it.
constexpr int linesWidth = 256;
constexpr int linesHeight = 192;

constexpr WPARAM bullet = 0x25CF;

std::u16string inUtf16(std::wstring_view text) { return {text.begin(), text.end()}; }

DWORD styleOf(const forms::TextField& control, const Element& element) {
  if (element.kind == Kind::lines) return ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL | WS_VSCROLL;
  return control.password ? ES_AUTOHSCROLL | ES_PASSWORD : ES_AUTOHSCROLL;
}

}  // namespace

LabelPart::LabelPart(const Element& element, forms::Control* control, const Look& look)
    : Part(element, control, look), scrolls_(tooHigh()) {
  if (scrolls_) {
    make(WC_EDITW, ES_MULTILINE | ES_READONLY | WS_VSCROLL | WS_TABSTOP);
    return;
  }
  DWORD style = SS_LEFT;
  if (element.partner.empty()) style |= SS_NOPREFIX;
  if (!element.wraps && element.textVertical == Align::centre) style |= SS_CENTERIMAGE;
  if (!element.tip.empty()) style |= SS_NOTIFY;
  make(WC_STATICW, style);
}

std::string LabelPart::caption() const { return partner_ && !partner_->isReadOnly() ? content() : std::string(); }

void LabelPart::show() { setText(element().partner.empty() ? wideLines(content()) : marked()); }

bool LabelPart::tooHigh() const { return element().wraps && natural().height >= look().pixels(highest); }

Size LabelPart::natural() const {
  const std::wstring text = wide(content());
  const Size size = look().measure(text, look().font());
  if (!element().wraps) return {size.width + 1, size.height};
  const int width = std::clamp(size.width + 4, look().pixels(narrowest), look().pixels(widest));
  const int height = look().measure(text, look().font(), width).height;
  if (height < look().pixels(highest)) return {width, height};
  return {width + GetSystemMetrics(SM_CXVSCROLL) + look().pixels(8), look().pixels(highest)};
}

/// Several lines stand in the middle of their place, as a single one does.
void LabelPart::place(const Box& box) {
  if (!element().wraps || scrolls_) return Part::place(box);
  const int height = std::min(box.height, natural().height);
  Part::place({box.left, box.top + (box.height - height) / 2, box.width, height});
}

TextPart::TextPart(const Element& element, forms::TextField& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(WC_EDITW, styleOf(control, element), WS_EX_CLIENTEDGE);
  if (control.password) send(EM_SETPASSWORDCHAR, bullet);
}

bool TextPart::takesLines() const { return element().kind == Kind::lines && !control_.readOnly(); }

Size TextPart::natural() const {
  if (element().kind == Kind::lines) return {look().pixels(linesWidth), look().pixels(linesHeight)};
  return {0, look().lineHeight() + 2 * GetSystemMetrics(SM_CYEDGE) + look().pixels(aroundLine)};
}

std::wstring TextPart::shown() const {
  return element().kind == Kind::lines ? wideLines(control_.text()) : wide(control_.text());
}

void TextPart::show() {
  if (readOnly_ != control_.readOnly()) {
    readOnly_ = control_.readOnly();
    send(EM_SETREADONLY, *readOnly_ ? TRUE : FALSE);
  }
  const std::wstring text = shown();
  if (textOf(handle()) == text) return;
  SetWindowTextW(handle(), text.c_str());
  // Of a text that is too long for its field the beginning is seen.
  send(EM_SETSEL, 0, 0);
  fitScrollBar();
}

void TextPart::place(const Box& box) {
  Part::place(box);
  fitScrollBar();
}

/// A bar is there only when not all lines are seen.
void TextPart::fitScrollBar() const {
  if (element().kind != Kind::lines) return;
  RECT inside{};
  send(EM_GETRECT, 0, reinterpret_cast<LPARAM>(&inside));
  const auto height = static_cast<int>(send(EM_GETLINECOUNT)) * look().lineHeight();
  const bool wanted = height > inside.bottom - inside.top;
  const bool present = (GetWindowLongW(handle(), GWL_STYLE) & WS_VSCROLL) != 0;
  if (wanted != present) ShowScrollBar(handle(), SB_VERT, wanted);
}

void TextPart::command(WORD code) {
  if (code == EN_CHANGE) fitScrollBar();
  if (code == EN_CHANGE && !showing()) edited();
}

void TextPart::edited() {
  const std::wstring before = shown();
  const std::wstring typed = textOf(handle());
  if (typed == before) return;
  DWORD cursor = 0;
  send(EM_GETSEL, 0, reinterpret_cast<LPARAM>(&cursor));
  const auto passed = frontend::filterEdit(control_, inUtf16(before), {inUtf16(typed), cursor});
  const std::wstring text(passed.text.begin(), passed.text.end());
  act([&] { control_.userEdit(narrow(text)); });
  if (textOf(handle()) == shown() && text == typed) return;
  update();
  send(EM_SETSEL, passed.cursor, static_cast<LPARAM>(passed.cursor));
}

}  // namespace kartix::adapters::native
