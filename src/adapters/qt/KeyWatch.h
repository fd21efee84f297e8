#pragma once

#include <QHash>
#include <QObject>
#include <chrono>
#include <optional>

#include "adapters/qt/InputClock.h"

class QKeyEvent;

namespace kartix::adapters::qt {

class Window;

/// Looks at every key event of the application, and keeps from our windows those presses of Enter, Space, Escape, F2
/// and of letters with Alt that are none of the clerk's for what is shown:
///
/// - a key that is held down. What the display sends for it looks like any other press on a busy machine, so a press
///   counts only when nothing was heard of the key for a while before it;
/// - a press made before the window was painted, or while one of its handlers was at work;
/// - in a window that was at work, any press as long as a key is still down from before.
///
/// In text fields the keys type and may be held; only one that is held from before types nothing.
class KeyWatch : public QObject {
 public:
  using Time = InputClock::Time;

  /// Looks from now on at the events of the present application object.
  void begin();

  /// Takes note of a key event without a word on what becomes of it: for those that `eventFilter` does not get to
  /// see. Every other event is passed over. One that is noted twice counts once.
  void note(const QObject* receiver, const QEvent& event);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  /// What is known of a key, as far back as it was never let alone.
  struct Key {
    Time since;         ///< the first event
    Time last;          ///< the last one
    bool down = false;  ///< the last one was a press
  };
  struct Press {
    Time made;
    Time since;  ///< of its key
    bool fresh = false;
  };

  bool refuses(QObject* receiver, QEvent* event);
  void notePress(const QKeyEvent& event);
  void noteRelease(const QKeyEvent& event);
  bool counts(const Window& window) const;
  bool types(const Window& window) const;
  bool anyDownSince(Time time) const;

  InputClock clock_;
  QHash<quint32, Key> keys_;
  std::optional<Press> press_;                        ///< the last one
  std::optional<std::pair<quint32, quint64>> asked_;  ///< key and time of a press that came as a possible shortcut
};

}  // namespace kartix::adapters::qt
