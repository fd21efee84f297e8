#include "adapters/qt/TextMirrors.h"

#include <QPalette>
#include <QSignalBlocker>
#include <utility>

#include "adapters/frontend/KeyFilter.h"

namespace kartix::adapters::qt {
namespace {

/// Fields that take no input are told apart by the colour of the window.
void showReadOnly(QWidget& widget, bool readOnly) {
  QPalette palette;
  if (readOnly) palette.setColor(QPalette::Base, palette.color(QPalette::Window).lighter(103));
  widget.setPalette(palette);
}

/// The key filter at work on an edit.
struct Typed {
  QString text;
  int cursor = 0;
};

Typed filtered(const forms::TextField& field, const QString& before, const Typed& typed) {
  const auto passed = frontend::filterEdit(field, before.toStdU16String(),
                                           {typed.text.toStdU16String(), static_cast<std::size_t>(typed.cursor)});
  return {QString::fromStdU16String(passed.text), static_cast<int>(passed.cursor)};
}

}  // namespace

LineMirror::LineMirror(forms::TextField& control, QLineEdit& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {}

void LineMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QLineEdit::textEdited, this, [this] { protect([this] { edited(); }); });
}

void LineMirror::show() {
  const auto echo = control_.password ? QLineEdit::Password : QLineEdit::Normal;
  if (widget_.echoMode() != echo) widget_.setEchoMode(echo);
  if (readOnly_ != control_.readOnly()) {
    readOnly_ = control_.readOnly();
    widget_.setReadOnly(*readOnly_);
    showReadOnly(widget_, *readOnly_);
  }
  const QString text = QString::fromStdString(control_.text());
  if (widget_.text() == text) return;
  widget_.setText(text);
  // Of a text that is too long for its field the beginning is seen.
  widget_.setCursorPosition(0);
}

void LineMirror::edited() {
  const Typed typed{widget_.text(), widget_.cursorPosition()};
  const Typed passed = filtered(control_, QString::fromStdString(control_.text()), typed);
  if (passed.text != typed.text) {
    const QSignalBlocker quiet(&widget_);
    widget_.setText(passed.text);
    widget_.setCursorPosition(passed.cursor);
  }
  act([&] { control_.userEdit(passed.text.toStdString()); });
}

LinesMirror::LinesMirror(forms::TextField& control, QPlainTextEdit& widget)
    : Mirror(control, widget), control_(control), widget_(widget) {
  widget_.setTabChangesFocus(true);
}

void LinesMirror::takeInput(Gate gate) {
  Mirror::takeInput(std::move(gate));
  connect(&widget_, &QPlainTextEdit::textChanged, this, [this] { protect([this] { edited(); }); });
}

void LinesMirror::show() {
  if (readOnly_ != control_.readOnly()) {
    readOnly_ = control_.readOnly();
    widget_.setReadOnly(*readOnly_);
    showReadOnly(widget_, *readOnly_);
    widget_.setTextInteractionFlags(*readOnly_ ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                               : Qt::TextEditorInteraction);
  }
  const QString text = shown(control_.text());
  if (widget_.toPlainText() != text) widget_.setPlainText(text);
}

void LinesMirror::edited() {
  const QString before = shown(control_.text());
  const Typed typed{widget_.toPlainText(), widget_.textCursor().position()};
  if (typed.text == before) return;
  const Typed passed = filtered(control_, before, typed);
  if (passed.text != typed.text) {
    const QSignalBlocker quiet(&widget_);
    widget_.setPlainText(passed.text);
    QTextCursor cursor = widget_.textCursor();
    cursor.setPosition(passed.cursor);
    widget_.setTextCursor(cursor);
  }
  act([&] { control_.userEdit(entered(passed.text)); });
}

}  // namespace kartix::adapters::qt
