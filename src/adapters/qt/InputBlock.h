#pragma once

#include <QObject>

namespace kartix::adapters::qt {

/// As long as it lives, the keys and clicks that events are dispatched for are dropped: what a clerk does while the
/// program is at work neither runs anything now nor waits to be run later.
class InputBlock : public QObject {
 public:
  InputBlock();

  /// Dispatches what is pending, without input.
  static void paintPending();

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;
};

}  // namespace kartix::adapters::qt
