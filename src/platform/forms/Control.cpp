#include "platform/forms/Control.h"

#include <algorithm>

#include "platform/forms/Form.h"

namespace kartix::forms {

Control::Control(Form& form, std::string name) : form_(form), name_(std::move(name)) { form_.add(this); }

void Control::changed(Change what) {
  if (form_.view()) form_.view()->controlChanged(*this, what);
}

void Control::raise(const std::function<void()>& handler) {
  if (handler) form_.guard(handler);
}

void Control::setText(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  changed(Change::text);
}

void Control::setEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  changed(Change::enabled);
}

void Control::setVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  changed(Change::visible);
}

void Control::setFocus(bool selectAll) {
  if (form_.view()) form_.view()->focusRequested(*this, selectAll);
}

bool Control::userClick() {
  if (!enabled_ || !visible_ || !onClick) return false;
  raise(onClick);
  return true;
}

void TextField::setReadOnly(bool readOnly) {
  if (readOnly == readOnly_) return;
  readOnly_ = readOnly;
  changed(Change::readOnly);
}

std::optional<char32_t> TextField::userKey(char32_t key) const {
  if (!onKeyPress) return key;
  return onKeyPress(key);
}

bool TextField::userEdit(std::string text) {
  if (!enabled() || !visible() || readOnly_) return false;
  if (text == this->text()) return true;
  assignText(std::move(text));
  raise(onChange);
  return true;
}

void OptionButton::setSelected(bool selected) {
  if (selected == selected_) return;
  selected_ = selected;
  changed(Change::selected);
  if (!selected) return;
  for (Control* other : form().controls()) {
    auto* option = dynamic_cast<OptionButton*>(other);
    if (option && option != this) option->setSelected(false);
  }
}

bool OptionButton::userClick() {
  if (!enabled() || !visible()) return false;
  setSelected(true);
  raise(onClick);
  return true;
}

void ComboBox::setItems(std::vector<std::string> items) {
  items_ = std::move(items);
  changed(Change::items);
}

bool ComboBox::userSelect(std::size_t index) {
  if (!enabled() || !visible() || index >= items_.size()) return false;
  setText(items_[index]);
  raise(onChange);
  return true;
}

void ListView::setColumns(std::vector<std::string> columns) {
  columns_ = std::move(columns);
  changed(Change::rows);
}

void ListView::setRows(std::vector<Row> rows) {
  rows_ = std::move(rows);
  current_.reset();
  if (!rows_.empty()) current_ = 0;
  changed(Change::rows);
}

bool ListView::userMove(std::size_t row) {
  if (row >= rows_.size()) return false;
  current_ = row;
  return true;
}

bool ListView::userDoubleClick(std::size_t row) {
  if (!enabled() || !visible() || !userMove(row)) return false;
  raise(onDoubleClick);
  return true;
}

void ListView::userEnter() {
  if (enabled() && visible() && current_) raise(onEnter);
}

void ProgressBar::setValue(int value) {
  value = std::clamp(value, 0, 100);
  if (value == value_) return;
  value_ = value;
  changed(Change::value);
}

void Picture::setFile(std::string file) {
  file_ = std::move(file);
  changed(Change::picture);
}

}  // namespace kartix::forms
