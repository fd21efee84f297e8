#include "adapters/qt/Icons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kartix::adapters::qt {
namespace {

enum class Drawing { question, exclamation, critical };

/// Draws in a square of 100 units.
void drawMark(QPainter& painter, const QString& mark) {
  QFont font = painter.font();
  font.setFamilies({QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")});
  font.setBold(true);
  font.setPixelSize(64);
  QPainterPath letters;
  letters.addText(0, 0, font, mark);
  const QRectF box = letters.boundingRect();
  letters.translate(50 - box.center().x(), 50 - box.center().y());
  painter.fillPath(letters, Qt::white);
}

void drawQuestion(QPainter& painter) {
  painter.setBrush(QColor(0x1f, 0x6f, 0xc4));
  painter.drawEllipse(4, 4, 92, 92);
  drawMark(painter, QStringLiteral("?"));
}

void drawExclamation(QPainter& painter) {
  QPainterPath triangle;
  triangle.moveTo(50, 12);
  triangle.lineTo(92, 86);
  triangle.lineTo(8, 86);
  triangle.closeSubpath();
  const QColor amber(0xe8, 0x9a, 0x00);
  painter.setPen(QPen(amber, 12, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(amber);
  painter.drawPath(triangle);
  painter.setPen(QPen(Qt::white, 10, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(50, 36), QPointF(50, 60));
  painter.drawPoint(QPointF(50, 77));
}

void drawCritical(QPainter& painter) {
  painter.setBrush(QColor(0xc6, 0x28, 0x28));
  painter.drawEllipse(4, 4, 92, 92);
  painter.setPen(QPen(Qt::white, 13, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(33, 33), QPointF(67, 67));
  painter.drawLine(QPointF(67, 33), QPointF(33, 67));
}

class DrawnIcon : public QIconEngine {
 public:
  explicit DrawnIcon(Drawing drawing) : drawing_(drawing) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / 100.0, rect.height() / 100.0);
    painter->setPen(Qt::NoPen);
    if (drawing_ == Drawing::question) drawQuestion(*painter);
    if (drawing_ == Drawing::exclamation) drawExclamation(*painter);
    if (drawing_ == Drawing::critical) drawCritical(*painter);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new DrawnIcon(drawing_); }

 private:
  Drawing drawing_;
};

}  // namespace

QIcon drawnIcon(const QString& name) {
  if (name == u"question") return QIcon(new DrawnIcon(Drawing::question));
  if (name == u"exclamation") return QIcon(new DrawnIcon(Drawing::exclamation));
  if (name == u"critical") return QIcon(new DrawnIcon(Drawing::critical));
  return {};
}

}  // namespace kartix::adapters::qt
