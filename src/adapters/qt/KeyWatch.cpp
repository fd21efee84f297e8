#include "adapters/qt/KeyWatch.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QWindow>
#include <algorithm>
#include <array>
#include <utility>

#include "adapters/qt/Window.h"

namespace kartix::adapters::qt {
namespace {

bool isModifier(int key) {
  return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) || key == Qt::Key_AltGr || key == Qt::Key_Super_L ||
         key == Qt::Key_Super_R;
}

/// The key itself, whatever it means together with others.
quint32 identity(const QKeyEvent& event) {
  return event.nativeScanCode() != 0 ? event.nativeScanCode() : static_cast<quint32>(event.key());
}

/// Our window that gets what is sent to `receiver`: its own, or that of a list that has dropped down from it.
const Window* ourWindow(const QObject* receiver) {
  const QWidgetList windows = QApplication::topLevelWidgets();
  const auto found =
      std::find_if(windows.begin(), windows.end(), [&](const QWidget* w) { return w->windowHandle() == receiver; });
  if (found == windows.end()) return nullptr;
  const QWidget* const popup = (*found)->windowType() == Qt::Popup ? (*found)->parentWidget() : nullptr;
  return dynamic_cast<const Window*>(popup ? popup->window() : *found);
}

bool isEnter(const QKeyEvent& event) { return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter; }

bool activates(const QKeyEvent& event) {
  constexpr std::array keys = {Qt::Key_Space, Qt::Key_Select, Qt::Key_Escape, Qt::Key_Cancel, Qt::Key_F2};
  return isEnter(event) || std::find(keys.begin(), keys.end(), event.key()) != keys.end();
}

bool isTyped(const QKeyEvent& event, const QWidget* focus) {
  const auto* const lines = qobject_cast<const QPlainTextEdit*>(focus);
  if (isEnter(event)) return lines && !lines->isReadOnly();
  return event.key() == Qt::Key_Space && (lines || qobject_cast<const QLineEdit*>(focus));
}

}  // namespace

void KeyWatch::begin() { QCoreApplication::instance()->installEventFilter(this); }

bool KeyWatch::eventFilter(QObject* receiver, QEvent* event) {
  try {
    return refuses(receiver, event);
  } catch (...) {
    // A key that cannot be judged does not count.
    return event->isInputEvent();
  }
}

bool KeyWatch::refuses(QObject* receiver, QEvent* event) {
  note(receiver, *event);
  if (event->type() == QEvent::Shortcut && receiver->isWidgetType()) {
    const auto* const window = dynamic_cast<const Window*>(static_cast<const QWidget*>(receiver)->window());
    return window && !keyboard_.counts(window->readiness());
  }
  if (event->type() != QEvent::KeyPress || !receiver->isWindowType()) return false;
  const auto& key = static_cast<const QKeyEvent&>(*event);
  const Window* const window = activates(key) ? ourWindow(receiver) : nullptr;
  if (!window) return false;
  return !(isTyped(key, window->focusWidget()) ? keyboard_.types(window->readiness())
                                               : keyboard_.counts(window->readiness()));
}

/// Events reach a window first, and its widgets through it.
void KeyWatch::note(const QObject* receiver, const QEvent& event) {
  if (!receiver->isWindowType() || !event.isInputEvent()) return;
  switch (event.type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
      return notePress(static_cast<const QKeyEvent&>(event));
    case QEvent::KeyRelease:
      return noteRelease(static_cast<const QKeyEvent&>(event));
    default:
      clock_.made(static_cast<const QInputEvent&>(event).timestamp());
  }
}

void KeyWatch::notePress(const QKeyEvent& event) {
  const std::pair<quint32, quint64> mark{identity(event), event.timestamp()};
  const auto made = clock_.made(event.timestamp());
  if (isModifier(event.key())) return;
  // A press is offered as a shortcut first.
  if (event.type() == QEvent::KeyPress && std::exchange(asked_, std::nullopt) == mark) return;
  if (event.type() == QEvent::ShortcutOverride) asked_ = mark;
  keyboard_.press(mark.first, made, event.isAutoRepeat());
}

void KeyWatch::noteRelease(const QKeyEvent& event) {
  const auto made = clock_.made(event.timestamp());
  if (isModifier(event.key())) return;
  asked_.reset();
  keyboard_.release(identity(event), made);
}

}  // namespace kartix::adapters::qt
