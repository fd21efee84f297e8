#pragma once

#include <QObject>
#include <optional>
#include <utility>

#include "adapters/frontend/InputClock.h"
#include "adapters/frontend/Keyboard.h"

class QKeyEvent;

namespace kartix::adapters::qt {

class Window;

/// Looks at every key event of the application, and keeps from our windows those presses of Enter, Space, Escape, F2
/// and of letters with Alt that are none of the clerk's for what is shown (`frontend::Keyboard`).
class KeyWatch : public QObject {
 public:
  /// Looks from now on at the events of the present application object.
  void begin();

  /// Takes note of a key event without a word on what becomes of it: for those that `eventFilter` does not get to
  /// see. Every other event is passed over. One that is noted twice counts once.
  void note(const QObject* receiver, const QEvent& event);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  bool refuses(QObject* receiver, QEvent* event);
  void notePress(const QKeyEvent& event);
  void noteRelease(const QKeyEvent& event);

  frontend::InputClock clock_;
  frontend::Keyboard keyboard_;
  std::optional<std::pair<quint32, quint64>> asked_;  ///< key and time of a press that came as a possible shortcut
};

}  // namespace kartix::adapters::qt
