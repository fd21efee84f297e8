#pragma once

#include <QFrame>

namespace kartix::adapters::qt {

/// The face of a driver card in the European layout, without its fields: white with a fine pattern, the member
/// state's sign within the stars at the top left, and the chip at the left.
class CardFace : public QFrame {
 public:
  using QFrame::QFrame;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void draw();
};

}  // namespace kartix::adapters::qt
