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

void Form::guard(const std::function<void()>& handler) {
  struct Depth {
    int& depth;
    explicit Depth(int& d) : depth(d) { ++depth; }
    ~Depth() { --depth; }
  } depth(depth_);
  try {
    handler();
    return;
  } catch (const std::exception& error) {
    failure_ = error.what();
  } catch (...) {
    failure_ = "unknown failure";
  }
  onFailure();
  hide();
}

}  // namespace kartix::forms
