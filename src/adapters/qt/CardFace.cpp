#include "adapters/qt/CardFace.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>
#include <numbers>

#include "adapters/qt/Scale.h"

namespace kartix::adapters::qt {
namespace {

/// In units of the design, as all lengths here.
constexpr QRectF emblem(20, 16, 54, 38);
constexpr QSizeF chip(64, 54);
constexpr qreal cornerRadius = 14;

QPainterPath star(QPointF centre, qreal radius) {
  constexpr int points = 5;
  constexpr qreal inner = 0.382;
  QPainterPath path;
  for (int i = 0; i < 2 * points; ++i) {
    const qreal angle = i * std::numbers::pi / points;
    const qreal distance = i % 2 == 0 ? radius : radius * inner;
    const QPointF corner = centre + distance * QPointF(std::sin(angle), -std::cos(angle));
    i == 0 ? path.moveTo(corner) : path.lineTo(corner);
  }
  path.closeSubpath();
  return path;
}

void drawEmblem(QPainter& painter) {
  constexpr int stars = 12;
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x00, 0x33, 0x99));
  painter.drawRoundedRect(emblem, 3, 3);
  painter.setBrush(QColor(0xff, 0xcc, 0x00));
  for (int i = 0; i < stars; ++i) {
    const qreal angle = i * 2 * std::numbers::pi / stars;
    painter.drawPath(star(emblem.center() + 14 * QPointF(std::sin(angle), -std::cos(angle)), 2.6));
  }
  QFont font = painter.font();
  font.setBold(true);
  font.setPixelSize(15);
  QPainterPath letter;
  letter.addText(0, 0, font, QStringLiteral("D"));
  letter.translate(emblem.center() - letter.boundingRect().center());
  painter.fillPath(letter, Qt::white);
}

/// Waves across the card, each a little later than the one above.
void drawPattern(QPainter& painter, const QRectF& face) {
  constexpr int step = 4;
  constexpr int distance = 7;
  const auto right = static_cast<int>(face.right()) + step;
  const auto bottom = static_cast<int>(face.bottom()) + 2 * distance;
  for (int y = -distance; y < bottom; y += distance) {
    QPainterPath wave(QPointF(0, y));
    for (int x = 0; x <= right; x += step) {
      wave.lineTo(x, y + 6 * std::sin(x / 38.0 + y / 60.0) + 3 * std::sin(x / 13.0 - y / 45.0));
    }
    painter.strokePath(wave, QPen(QColor(0x4a, 0x7a, 0xb8, 0x30), 0.8));
  }
}

void drawChip(QPainter& painter, const QRectF& place) {
  QLinearGradient gold(place.topLeft(), place.bottomRight());
  gold.setColorAt(0, QColor(0xf1, 0xdd, 0x9c));
  gold.setColorAt(1, QColor(0xc2, 0xa0, 0x4a));
  painter.setPen(QPen(QColor(0x8f, 0x74, 0x2e), 1));
  painter.setBrush(gold);
  painter.drawRoundedRect(place, 8, 8);
  const QRectF middle(place.left() + place.width() / 3, place.top() + place.height() / 4, place.width() / 3,
                      place.height() / 2);
  painter.drawRoundedRect(middle, 5, 5);
  for (const qreal part : {0.25, 0.5, 0.75}) {
    const qreal y = place.top() + part * place.height();
    painter.drawLine(QPointF(place.left(), y), QPointF(middle.left(), y));
    painter.drawLine(QPointF(middle.right(), y), QPointF(place.right(), y));
  }
  const qreal x = place.center().x();
  painter.drawLine(QPointF(x, place.top()), QPointF(x, middle.top()));
  painter.drawLine(QPointF(x, middle.bottom()), QPointF(x, place.bottom()));
}

}  // namespace

void CardFace::paintEvent(QPaintEvent* /*event*/) {
  try {
    draw();
  } catch (...) {
    // The card is an ornament.
  }
}

void CardFace::draw() {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal scale = scaleOf(*this);
  painter.scale(scale, scale);
  const QRectF face = QRectF(QPointF(0, 0), QSizeF(size()) / scale).adjusted(0.5, 0.5, -0.5, -0.5);
  QPainterPath outline;
  outline.addRoundedRect(face, cornerRadius, cornerRadius);
  QLinearGradient paper(face.topLeft(), face.bottomRight());
  paper.setColorAt(0, Qt::white);
  paper.setColorAt(1, QColor(0xe6, 0xee, 0xf7));
  painter.fillPath(outline, paper);
  painter.setClipPath(outline);
  drawPattern(painter, face);
  painter.setClipping(false);
  drawEmblem(painter);
  drawChip(painter, QRectF(QPointF(emblem.left(), face.top() + face.height() * 0.36), chip));
  painter.strokePath(outline, QPen(QColor(0x8b, 0xa0, 0xb8), 1));
}

}  // namespace kartix::adapters::qt
