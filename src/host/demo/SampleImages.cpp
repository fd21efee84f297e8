#include "host/demo/SampleImages.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "host/Command.h"

namespace kartix::host {
namespace {

void save(const QImage& image, const std::string& file) {
  constexpr int quality = 92;
  if (!image.save(QString::fromStdString(file), "JPG", quality)) throw CommandFailure(file + ": cannot be written");
}

void drawShoulders(QPainter& painter) {
  QPainterPath shoulders;
  shoulders.moveTo(40, 1000);
  shoulders.cubicTo(60, 800, 200, 760, 300, 720);
  shoulders.lineTo(480, 720);
  shoulders.cubicTo(580, 760, 720, 800, 740, 1000);
  painter.setBrush(QColor(0x2f, 0x4a, 0x63));
  painter.drawPath(shoulders);
  QPainterPath collar;
  collar.moveTo(300, 720);
  collar.lineTo(390, 860);
  collar.lineTo(480, 720);
  painter.setBrush(QColor(0xf4, 0xf6, 0xf8));
  painter.drawPath(collar);
}

void drawHead(QPainter& painter) {
  painter.setBrush(QColor(0x5a, 0x3b, 0x26));
  painter.drawEllipse(QRectF(195, 160, 390, 520));
  QLinearGradient skin(240, 300, 560, 640);
  skin.setColorAt(0, QColor(0xf6, 0xd2, 0xb8));
  skin.setColorAt(1, QColor(0xdf, 0xae, 0x8f));
  painter.setBrush(skin);
  painter.drawRoundedRect(QRectF(325, 600, 130, 160), 50, 50);
  painter.drawEllipse(QRectF(240, 260, 300, 420));
  QPainterPath fringe;
  fringe.moveTo(235, 430);
  fringe.cubicTo(240, 240, 380, 200, 545, 420);
  fringe.cubicTo(560, 180, 240, 130, 235, 430);
  painter.setBrush(QColor(0x4d, 0x31, 0x1f));
  painter.drawPath(fringe);
}

void drawFace(QPainter& painter) {
  for (const qreal x : {325.0, 455.0}) {
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(x, 450), 30, 17);
    painter.setBrush(QColor(0x3a, 0x5a, 0x40));
    painter.drawEllipse(QPointF(x, 450), 14, 14);
  }
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0x9c, 0x66, 0x4d), 7, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(QRectF(362, 480, 56, 56), 200 * 16, 140 * 16);
  painter.setPen(QPen(QColor(0xa3, 0x3f, 0x3f), 11, Qt::SolidLine, Qt::RoundCap));
  painter.drawArc(QRectF(320, 520, 140, 80), 205 * 16, 130 * 16);
}

}  // namespace

void drawSamplePhoto(const std::string& file) {
  QImage image(780, 1000, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient wall(0, 0, 0, image.height());
  wall.setColorAt(0, QColor(0xdd, 0xe6, 0xee));
  wall.setColorAt(1, QColor(0xb9, 0xc8, 0xd4));
  painter.fillRect(image.rect(), wall);
  painter.setPen(Qt::NoPen);
  drawShoulders(painter);
  drawHead(painter);
  drawFace(painter);
  painter.end();
  save(image, file);
}

void drawSampleSignature(const std::string& file) {
  QImage image(1200, 300, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0x1c, 0x2c, 0x6b), 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  QPainterPath ink;
  ink.moveTo(120, 220);
  ink.cubicTo(190, 20, 250, 20, 240, 230);
  ink.cubicTo(250, 120, 330, 90, 340, 180);
  ink.cubicTo(350, 240, 400, 240, 420, 170);
  ink.cubicTo(430, 120, 480, 120, 470, 190);
  ink.cubicTo(470, 260, 560, 220, 590, 90);
  ink.cubicTo(600, 40, 560, 60, 580, 190);
  ink.cubicTo(590, 240, 650, 230, 680, 170);
  ink.cubicTo(710, 110, 740, 150, 720, 200);
  ink.cubicTo(730, 240, 800, 210, 830, 150);
  ink.cubicTo(850, 110, 870, 160, 860, 200);
  ink.cubicTo(870, 250, 980, 200, 1080, 130);
  painter.drawPath(ink);
  painter.drawLine(QPointF(180, 150), QPointF(280, 140));
  painter.end();
  save(image, file);
}

}  // namespace kartix::host
