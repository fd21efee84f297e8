#include "adapters/qt/InputBlock.h"

#include <QCoreApplication>
#include <QEvent>

#include "adapters/qt/KeyWatch.h"

namespace kartix::adapters::qt {

InputBlock::InputBlock(KeyWatch* keys) : keys_(keys) { QCoreApplication::instance()->installEventFilter(this); }

void InputBlock::paintPending(KeyWatch* keys) {
  const InputBlock block(keys);
  QCoreApplication::processEvents();
}

bool InputBlock::eventFilter(QObject* receiver, QEvent* event) {
  try {
    if (keys_) keys_->note(receiver, *event);
  } catch (...) {
    // What is dropped all the same need not be remembered.
  }
  switch (event->type()) {
    // Releases are let through, so that nothing stays pressed; a busy form ignores what follows from them.
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::ContextMenu:
    case QEvent::Drop:
      return true;
    case QEvent::Close:
      event->ignore();
      return true;
    default:
      return QObject::eventFilter(receiver, event);
  }
}

}  // namespace kartix::adapters::qt
