#pragma once

#include <QObject>

namespace kartix::adapters::qt {

class KeyWatch;

/// As long as it lives, the keys and clicks that events are dispatched for are dropped: what a clerk does while the
/// program is at work neither runs anything now nor waits to be run later. The keys are noted by the watch, if there
/// is one.
class InputBlock : public QObject {
 public:
  explicit InputBlock(KeyWatch* keys);

  /// Dispatches what is pending, without input.
  static void paintPending(KeyWatch* keys = nullptr);

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  KeyWatch* keys_;
};

}  // namespace kartix::adapters::qt
