#include "platform/forms/Form.h"

#include <algorithm>

namespace kartix::forms {

Form::Form(std::string name, std::string caption) : name_(std::move(name)), caption_(std::move(caption)) {}

void Form::setCaption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  if (view_) view_->captionChanged();
}

Control* Form::find(std::string_view name) const {
  auto found = std::find_if(controls_.begin(), controls_.end(), [&](const Control* c) { return c->name() == name; });
  return found == controls_.end() ? nullptr : *found;
}

void Form::load() {
  if (loaded_) return;
  loaded_ = true;
  guard([this] { onLoad(); });
}

void Form::hide() {
  if (!shown_) return;
  shown_ = false;
  decided_ = true;
  if (view_) view_->formHidden();
}

void Form::firePaintedTimer() {
  if (!Timer1.running()) return;
  Timer1.stop();
  if (Timer1.onTimer) guard(Timer1.onTimer);
}

void Form::userClose() {
  guard([this] { onCloseBox(); });
}

void Form::guard(const std::function<void()>& handler) noexcept {
  struct Depth {
    int& depth;
    explicit Depth(int& d) : depth(d) { ++depth; }
    ~Depth() { --depth; }
  } depth(depth_);
  protect(handler);
}

void Form::fail(std::string_view reason) noexcept {
  // Short enough to need no memory.
  constexpr const char* unknown = "unknown failure";
  try {
    failure_ = reason.empty() ? unknown : reason;
  } catch (...) {
    failure_ = unknown;
  }
  try {
    if (!decided_) onFailure();
  } catch (...) {
    // The window goes all the same.
  }
  try {
    hide();
  } catch (...) {
    // It counts as hidden, and that ends its showing.
  }
}

}  // namespace kartix::forms
