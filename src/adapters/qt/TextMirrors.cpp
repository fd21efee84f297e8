#include "adapters/qt/TextMirrors.h"

#include <QPalette>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

namespace kartix::adapters::qt {
namespace {

/// Fields that take no input are told apart by the colour of the window.
void showReadOnly(QWidget& widget, bool readOnly) {
  QPalette palette;
  if (readOnly) palette.setColor(QPalette::Base, palette.color(QPalette::Window).lighter(103));
  widget.setPalette(palette);
}

}  // namespace

Edited filterEdit(const forms::TextField& field, const QString& before, const Edited& after) {
  if (!field.onKeyPress) return after;
  const qsizetype shorter = std::min(before.size(), after.text.size());
  qsizetype head = 0;
  while (head < shorter && before[head] == after.text[head]) ++head;
  qsizetype tail = 0;
  while (tail < shorter - head && before[before.size() - 1 - tail] == after.text[after.text.size() - 1 - tail])
    ++tail;
  QString passed;
  const QString inserted = after.text.mid(head, after.text.size() - head - tail);
  for (const char32_t key : inserted.toUcs4()) {
    if (const auto taken = field.userKey(key)) passed += QString::fromUcs4(&*taken, 1);
  }
  const qsizetype behind = after.text.size() - std::max(after.cursor, head + inserted.size());
  QString text = after.text.left(head) + passed + after.text.right(tail);
  const qsizetype cursor = text.size() - behind;
  return {std::move(text), cursor};
}

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
  const Edited typed{widget_.text(), widget_.cursorPosition()};
  const Edited passed = filterEdit(control_, QString::fromStdString(control_.text()), typed);
  if (passed.text != typed.text) {
    const QSignalBlocker quiet(&widget_);
    widget_.setText(passed.text);
    widget_.setCursorPosition(static_cast<int>(passed.cursor));
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
  const Edited typed{widget_.toPlainText(), widget_.textCursor().position()};
  if (typed.text == before) return;
  const Edited passed = filterEdit(control_, before, typed);
  if (passed.text != typed.text) {
    const QSignalBlocker quiet(&widget_);
    widget_.setPlainText(passed.text);
    QTextCursor cursor = widget_.textCursor();
    cursor.setPosition(static_cast<int>(passed.cursor));
    widget_.setTextCursor(cursor);
  }
  act([&] { control_.userEdit(entered(passed.text)); });
}

}  // namespace kartix::adapters::qt
