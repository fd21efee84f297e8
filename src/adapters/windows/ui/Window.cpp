#include "adapters/windows/ui/Window.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "adapters/frontend/Accelerators.h"
#include "adapters/windows/ui/ButtonParts.h"
#include "adapters/windows/ui/DrawnParts.h"
#include "adapters/windows/ui/PartMaker.h"
#include "adapters/windows/ui/Text16.h"
#include "adapters/windows/ui/TextParts.h"

namespace kartix::adapters::native {
namespace {

/// How far the title of a group reaches into it.
constexpr int belowTitle = 4;

DWORD styleOf(const Design* design) {
  const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  return design && !design->fixed ? style | WS_THICKFRAME : style;
}

DWORD extendedStyleOf(HWND owner) {
  const DWORD style = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
  return owner ? style : style | WS_EX_APPWINDOW;
}

void addStyle(HWND handle, LONG style) {
  SetWindowLongW(handle, GWL_STYLE, GetWindowLongW(handle, GWL_STYLE) | style);
}

bool liesBelow(const Part& part) { return part.element().kind == Kind::group || part.element().kind == Kind::card; }

}  // namespace

Window::Window(forms::Form& form, HWND owner, const bool& hourglass)
    : form_(form),
      hourglass_(hourglass),
      design_(findDesign(form.name())),
      window_(*this, styleOf(design_), extendedStyleOf(owner), owner),
      look_(window_.get(), controls_) {
  if (!made()) return;
  window_.listen();
  const CommonControls::InForce scope(controls_);
  tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0,
                          0, handle(), nullptr, ownModule(), nullptr);
  build(*design_->root, nullptr);
  order();
  bindPartners();
  mirrorAll();
  arrange();
}

Window::~Window() = default;

void Window::build(const Element& element, const CardPart* card) {
  auto* control = form_.find(controlName(element.name));
  if (!control) control = form_.find(element.name);
  if (auto part = makePart(element, control, look_, card)) {
    if (const auto* const face = dynamic_cast<const CardPart*>(part.get())) card = face;
    if (!element.tip.empty()) addTip(*part);
    parts_.push_back(std::move(part));
  }
  for (const Element& child : element.children) build(child, card);
}

/// A text that is not seen as a whole is told to whoever points at it; hence it is asked for each time.
void Window::addTip(const Part& part) {
  TTTOOLINFOW tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = handle();
  tool.uId = reinterpret_cast<UINT_PTR>(part.handle());
  tool.lpszText = LPSTR_TEXTCALLBACKW;
  SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

/// The order of the windows is that of the tab key. A label comes right before its partner, which takes its name from
/// it; what others lie upon comes last.
void Window::order() {
  std::vector<Part*> ordered;
  const auto add = [&](Part* part) {
    if (part && std::find(ordered.begin(), ordered.end(), part) == ordered.end()) ordered.push_back(part);
  };
  Kind before = Kind::label;
  for (const std::string_view stop : design_->tabOrder) {
    for (const auto& part : parts_) {
      if (part->element().partner == stop) add(part.get());
    }
    Part* const part = partOf(stop);
    if (!part) continue;
    add(part);
    const Kind kind = part->element().kind;
    if (kind != Kind::option) addStyle(part->handle(), WS_TABSTOP);
    if (kind != before || (kind != Kind::option && kind != Kind::button)) addStyle(part->handle(), WS_GROUP);
    before = kind;
  }
  for (const bool below : {false, true}) {
    for (const auto& part : parts_) {
      if (liesBelow(*part) == below) add(part.get());
    }
  }
  HWND above = HWND_TOP;
  for (const Part* const part : ordered) {
    SetWindowPos(part->handle(), above, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    above = part->handle();
  }
  std::stable_sort(parts_.begin(), parts_.end(), [&](const auto& a, const auto& b) {
    return std::find(ordered.begin(), ordered.end(), a.get()) < std::find(ordered.begin(), ordered.end(), b.get());
  });
}

void Window::bindPartners() {
  for (const auto& part : parts_) {
    auto* const label = dynamic_cast<LabelPart*>(part.get());
    const Part* const partner = label ? partOf(label->element().partner) : nullptr;
    if (partner) label->setPartner(*partner);
  }
}

bool Window::owns(HWND handle) const {
  return handle && window_.get() && (handle == window_.get() || IsChild(window_.get(), handle) != FALSE);
}

void Window::takeInput(std::function<bool(const std::function<void()>&)> pass) {
  pass_ = std::move(pass);
  for (const auto& part : parts_) {
    part->takeInput([this](const std::function<void()>& action) {
      form_.protect([&] {
        if (!pass_(action)) mirrorAll();
      });
    });
  }
}

void Window::mirrorAll() {
  mirrorCaption();
  for (const auto& part : parts_) part->update();
  assignAccelerators();
}

void Window::mirrorCaption() { SetWindowTextW(handle(), wide(form_.caption()).c_str()); }

void Window::mirror(const forms::Control& control, forms::Change what) {
  Part* const part = partOf(control);
  if (!part) return;
  const CommonControls::InForce scope(controls_);
  const bool hadFocus = GetFocus() == part->handle();
  part->update();
  mirrorEnabled(*part, hadFocus);
  assignAccelerators();
  if (what == forms::Change::visible || part->element().wraps) arrange();
}

/// A control that is disabled for the time of its work gets the focus back afterwards, unless the clerk went
/// elsewhere.
void Window::mirrorEnabled(const Part& part, bool hadFocus) {
  const bool enabled = part.control()->enabled();
  if (hadFocus && !enabled) {
    lostFocus_ = part.handle();
    moveFocus(handle());
  }
  if (lostFocus_ != part.handle() || !enabled) return;
  lostFocus_ = nullptr;
  if (focus_ == handle()) moveFocus(part.handle());
}

void Window::focus(const forms::Control& control, bool selectAll) {
  const Part* const part = partOf(control);
  if (!part) return;
  lostFocus_ = nullptr;
  moveFocus(part->handle());
  if (selectAll && part->takesText()) SendMessageW(part->handle(), EM_SETSEL, 0, -1);
}

void Window::moveFocus(HWND to) {
  focus_ = to;
  if (GetActiveWindow() == handle()) SetFocus(to);
}

/// The clerk begins at the first control that takes input, not at one that only shows something.
void Window::restoreFocus() {
  if (!focus_ || (focus_ != handle() && IsWindowEnabled(focus_) == FALSE)) {
    const auto first =
        std::find_if(parts_.begin(), parts_.end(), [](const auto& part) { return part->takesInput(); });
    focus_ = first == parts_.end() ? handle() : (*first)->handle();
  }
  SetFocus(focus_);
}

void Window::assignAccelerators() {
  std::vector<Part*> bearers;
  std::vector<std::string> captions;
  // Buttons first: their letters are the ones that clerks learn.
  for (const bool buttons : {true, false}) {
    for (const auto& part : parts_) {
      if ((part->element().kind == Kind::button) != buttons) continue;
      bearers.push_back(part.get());
      captions.push_back(part->caption());
    }
  }
  if (captions == captions_) return;
  captions_ = captions;
  const auto letters = frontend::chooseAccelerators(captions);
  for (std::size_t i = 0; i < bearers.size(); ++i) bearers[i]->setAccelerator(letters[i]);
}

Layout Window::layout() const {
  return {*design_->root, look_.dpi(), look_.lineHeight() / 2 + look_.pixels(belowTitle),
          [this](const Element& element) {
            const auto found =
                std::find_if(parts_.begin(), parts_.end(), [&](const auto& p) { return &p->element() == &element; });
            return found == parts_.end() ? std::nullopt : (*found)->needed();
          }};
}

/// What the system puts around the inside of the window.
Size Window::frame() const {
  RECT outside{};
  RECT inside{};
  GetWindowRect(handle(), &outside);
  GetClientRect(handle(), &inside);
  return {outside.right - outside.left - inside.right, outside.bottom - outside.top - inside.bottom};
}

void Window::arrange() {
  const Size needed = layout().needed();
  RECT inside{};
  GetClientRect(handle(), &inside);
  const bool fits = arranged_ && !design_->fixed && inside.right >= needed.width && inside.bottom >= needed.height;
  arranged_ = true;
  if (!fits) {
    const Size around = frame();
    SetWindowPos(handle(), nullptr, 0, 0, needed.width + around.width, needed.height + around.height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  }
  place();
}

void Window::place() const {
  RECT inside{};
  GetClientRect(handle(), &inside);
  for (const Placed& placed : layout().place({inside.right, inside.bottom})) {
    const auto found =
        std::find_if(parts_.begin(), parts_.end(), [&](const auto& p) { return &p->element() == placed.element; });
    if (found != parts_.end()) (*found)->place(placed.box);
  }
  InvalidateRect(handle(), nullptr, TRUE);
}

void Window::centre() {
  RECT room{};
  RECT frame{};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &room, 0);
  GetWindowRect(handle(), &frame);
  const LONG left = room.left + (room.right - room.left - (frame.right - frame.left)) / 2;
  const LONG top = room.top + (room.bottom - room.top - (frame.bottom - frame.top)) / 2;
  SetWindowPos(handle(), nullptr, std::max(left, room.left), std::max(top, room.top), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  if (IsWindowVisible(handle()) != FALSE) SetForegroundWindow(handle());
}

void Window::show(bool activate) {
  ShowWindow(handle(), activate ? SW_SHOW : SW_SHOWNOACTIVATE);
  if (activate) SetForegroundWindow(handle());
}

void Window::paintNow() const { RedrawWindow(handle(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); }

void Window::markWorked() { readiness_.worked(std::chrono::steady_clock::now()); }

void Window::startTimer(Timer timer, unsigned milliseconds) const {
  SetTimer(handle(), timer, milliseconds, nullptr);
}

void Window::timer(Timer timer) {
  KillTimer(handle(), timer);
  if (timer == seen) readiness_.seen(std::chrono::steady_clock::now());
  if (onTimer) onTimer(timer);
}

void Window::painted() {
  // The clerk sees it once its controls are painted too.
  if (!std::exchange(painted_, true)) startTimer(seen, USER_TIMER_MINIMUM);
  if (onPainted) onPainted();
}

void Window::rescale(int dpi, const RECT& suggested) {
  if (!look_.rescale(dpi)) return;
  for (const auto& part : parts_) part->restyle();
  SetWindowPos(handle(), nullptr, suggested.left, suggested.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  arrange();
}

Part* Window::partOf(HWND handle) const {
  const auto found = std::find_if(parts_.begin(), parts_.end(), [&](const auto& p) { return p->handle() == handle; });
  return found == parts_.end() ? nullptr : found->get();
}

Part* Window::partOf(const forms::Control& control) const {
  const auto found =
      std::find_if(parts_.begin(), parts_.end(), [&](const auto& p) { return p->control() == &control; });
  return found == parts_.end() ? nullptr : found->get();
}

Part* Window::partOf(std::string_view widgetName) const {
  const auto found =
      std::find_if(parts_.begin(), parts_.end(), [&](const auto& p) { return p->element().name == widgetName; });
  return found == parts_.end() ? nullptr : found->get();
}

}  // namespace kartix::adapters::native
