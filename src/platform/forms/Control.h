#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kartix::forms {

class Form;

/// What of a control has changed; tells a front end what to mirror again.
enum class Change { text, enabled, visible, selected, items, rows, value, readOnly, picture };

/// A control of a window: its values, and the events that a front end raises on it. Values are set by the
/// component's code (which raises no event) or by the clerk through the `user...` functions (which do).
/// Events run inside the form's guard, so an exception never reaches a front end.
class Control {
 public:
  Control(Form& form, std::string name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  /// "Text[3]" in a control array, "Progress" on its own.
  const std::string& name() const { return name_; }
  Form& form() const { return form_; }

  const std::string& text() const { return text_; }
  void setText(std::string text);

  bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);

  bool visible() const { return visible_; }
  void setVisible(bool visible);

  /// Puts the keyboard focus here, with all text selected if wished.
  void setFocus(bool selectAll = false);

  std::function<void()> onClick;

  /// The clerk clicks. False (and nothing happens) when the control is disabled, hidden or has no click handler.
  virtual bool userClick();

 protected:
  void changed(Change what);
  void raise(const std::function<void()>& handler);
  void assignText(std::string text) { text_ = std::move(text); }

 private:
  Form& form_;
  std::string name_;
  std::string text_;
  bool enabled_ = true;
  bool visible_ = true;
};

class Label : public Control {
 public:
  using Control::Control;
};

/// One-line or multi-line text.
class TextField : public Control {
 public:
  using Control::Control;

  bool multiLine = false;  ///< fixed before the form is shown
  bool password = false;   ///< content is masked wherever it is shown; fixed before the form is shown

  bool readOnly() const { return readOnly_; }
  void setReadOnly(bool readOnly);

  /// Key filter: the character that takes the place of a typed one, or nothing when the key is dropped.
  std::function<std::optional<char32_t>(char32_t)> onKeyPress;
  std::function<void()> onChange;

  /// What becomes of a typed character.
  std::optional<char32_t> userKey(char32_t key) const;
  /// The clerk changes the whole text to `text`, which has passed the key filter already. Raises `onChange` when
  /// it differs. False when the field is disabled, hidden or read-only.
  bool userEdit(std::string text);

 private:
  bool readOnly_ = false;
};

/// One of the form's option buttons; selecting one deselects the others of the form.
class OptionButton : public Control {
 public:
  using Control::Control;

  bool selected() const { return selected_; }
  /// Selecting deselects the form's other option buttons.
  void setSelected(bool selected);
  /// The clerk chooses this option. False when it is disabled or hidden.
  bool userClick() override;

 private:
  bool selected_ = false;
};

class Button : public Control {
 public:
  using Control::Control;

  bool isDefault = false;  ///< Enter presses it; fixed before the form is shown
};

/// Drop-down list with a text of its own.
class ComboBox : public Control {
 public:
  using Control::Control;

  const std::vector<std::string>& items() const { return items_; }
  void setItems(std::vector<std::string> items);

  std::function<void()> onChange;
  /// The clerk takes entry `index` (from 0). False when disabled, hidden or there is no such entry.
  bool userSelect(std::size_t index);

 private:
  std::vector<std::string> items_;
};

/// List with columns.
class ListView : public Control {
 public:
  using Row = std::vector<std::string>;
  using Control::Control;

  const std::vector<std::string>& columns() const { return columns_; }
  void setColumns(std::vector<std::string> columns);
  const std::vector<Row>& rows() const { return rows_; }
  void setRows(std::vector<Row> rows);

  /// Row the clerk stands on, from 0; nothing when there is none.
  std::optional<std::size_t> currentRow() const { return current_; }

  std::function<void()> onDoubleClick;
  /// Enter in the list; the key goes no further.
  std::function<void()> onEnter;

  /// The clerk moves to row `row`. False when there is no such row.
  bool userMove(std::size_t row);
  /// The clerk double-clicks row `row`. False when disabled, hidden or there is no such row.
  bool userDoubleClick(std::size_t row);
  void userEnter();

 private:
  std::vector<std::string> columns_;
  std::vector<Row> rows_;
  std::optional<std::size_t> current_;
};

class ProgressBar : public Control {
 public:
  using Control::Control;

  int value() const { return value_; }
  /// `value` is held between 0 and 100.
  void setValue(int value);

 private:
  int value_ = 0;
};

/// Status bar; its text is that of the first panel.
class StatusBar : public Control {
 public:
  using Control::Control;
};

/// A picture: one of the window's own drawing, or an image file.
class Picture : public Control {
 public:
  using Control::Control;

  /// Image file to show; empty for the window's own drawing.
  const std::string& file() const { return file_; }
  void setFile(std::string file);

 private:
  std::string file_;
};

/// Controls of one kind under one name, told apart by index: `Text[3]`.
template <class C>
class ControlArray {
 public:
  ControlArray(Form& form, std::string_view name, std::initializer_list<int> indices) {
    for (int index : indices) {
      controls_.emplace(index, std::make_unique<C>(form, std::string(name) + "[" + std::to_string(index) + "]"));
    }
  }
  /// The control with this index, which must be one of the array's.
  C& operator[](int index) { return *controls_.at(index); }
  const C& operator[](int index) const { return *controls_.at(index); }

  auto begin() { return controls_.begin(); }
  auto end() { return controls_.end(); }

 private:
  std::map<int, std::unique_ptr<C>> controls_;
};

}  // namespace kartix::forms
