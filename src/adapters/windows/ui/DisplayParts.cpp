#include "adapters/windows/ui/DisplayParts.h"

#include "adapters/windows/ui/Text16.h"

namespace kartix::adapters::native {
namespace {

constexpr int aroundStatus = 8;

}  // namespace

ProgressPart::ProgressPart(const Element& element, forms::ProgressBar& control, const Look& look)
    : Part(element, &control, look), control_(control) {
  make(PROGRESS_CLASSW, PBS_SMOOTH);
  send(PBM_SETRANGE32, 0, 100);
}

void ProgressPart::show() {
  if (send(PBM_GETPOS) != control_.value()) send(PBM_SETPOS, static_cast<WPARAM>(control_.value()));
}

StatusPart::StatusPart(const Element& element, forms::StatusBar& control, const Look& look)
    : Part(element, &control, look) {
  make(STATUSCLASSNAMEW, CCS_NOPARENTALIGN | CCS_NORESIZE | CCS_NODIVIDER);
}

Size StatusPart::natural() const { return {0, look().lineHeight() + look().pixels(aroundStatus)}; }

void StatusPart::show() {
  const std::wstring text = wide(content());
  if (text == shown_) return;
  shown_ = text;
  send(SB_SETTEXTW, SBT_NOBORDERS, reinterpret_cast<LPARAM>((L" " + text).c_str()));
}

GroupPart::GroupPart(const Element& element, const Look& look) : Part(element, nullptr, look) {
  // The window paints the ground inside the frame.
  make(WC_BUTTONW, BS_GROUPBOX, WS_EX_TRANSPARENT);
}

}  // namespace kartix::adapters::native
