#include "adapters/qt/Scale.h"

#include <QApplication>
#include <QFontInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLayout>
#include <QRegularExpression>
#include <QScreen>
#include <algorithm>

#include "adapters/qt/Display.h"

namespace kartix::adapters::qt {
namespace {

/// Sizes beyond which a desktop is not followed.
constexpr qreal leastPoints = 8;
constexpr qreal mostPoints = 24;

/// What a window manager usually puts around a window that is not shown yet.
constexpr QSize usualFrame(8, 40);

int times(int length, qreal factor) { return length >= QWIDGETSIZE_MAX ? length : qRound(length * factor); }

QSize times(QSize size, qreal factor) { return {times(size.width(), factor), times(size.height(), factor)}; }

QString scaledSheet(const QString& sheet, qreal factor) {
  static const QRegularExpression points(QStringLiteral("(\\d+)pt"));
  QString result = sheet;
  qsizetype from = 0;
  for (QRegularExpressionMatch match; (match = points.match(result, from)).hasMatch();) {
    const QString length = QString::number(match.captured(1).toDouble() * factor);
    result.replace(match.capturedStart(1), match.capturedLength(1), length);
    from = match.capturedStart(1) + length.size();
  }
  return result;
}

void scaleSpacer(QSpacerItem& spacer, qreal factor) {
  const QSize size = times(spacer.sizeHint(), factor);
  const QSizePolicy policy = spacer.sizePolicy();
  spacer.changeSize(size.width(), size.height(), policy.horizontalPolicy(), policy.verticalPolicy());
}

void scaleLayout(QLayout& layout, qreal factor) {
  layout.setContentsMargins(layout.contentsMargins() * factor);
  if (auto* const grid = qobject_cast<QGridLayout*>(&layout)) {
    grid->setHorizontalSpacing(times(grid->horizontalSpacing(), factor));
    grid->setVerticalSpacing(times(grid->verticalSpacing(), factor));
  } else {
    layout.setSpacing(times(layout.spacing(), factor));
  }
  for (int i = 0; i < layout.count(); ++i) {
    if (auto* const spacer = layout.itemAt(i)->spacerItem()) scaleSpacer(*spacer, factor);
  }
}

void scaleWidget(QWidget& widget, qreal factor) {
  const QSize most = widget.maximumSize();
  widget.setMinimumSize(times(widget.minimumSize(), factor));
  widget.setMaximumSize(times(most, factor));
  if (!widget.styleSheet().isEmpty()) widget.setStyleSheet(scaledSheet(widget.styleSheet(), factor));
}

}  // namespace

QStringList designFamilies() { return {QStringLiteral("Verdana"), QStringLiteral("DejaVu Sans")}; }

QFont designFont(qreal points) {
  QFont font = QApplication::font();
  font.setFamilies(designFamilies() << font.family());
  font.setPointSizeF(points);
  return font;
}

void followDesktop(QWidget& window) {
  const QFont desktop = QApplication::font();
  // A font can be given in pixels.
  const qreal points = desktop.pointSizeF() > 0 ? desktop.pointSizeF() : QFontInfo(desktop).pointSizeF();
  window.setFont(designFont(std::clamp(points, leastPoints, mostPoints)));
  const qreal factor = scaleOf(window);
  if (qFuzzyCompare(factor, 1)) return;
  for (QWidget* const widget : window.findChildren<QWidget*>()) {
    if (!widget->objectName().startsWith(u"qt_")) scaleWidget(*widget, factor);
  }
  for (QLayout* const layout : window.findChildren<QLayout*>()) scaleLayout(*layout, factor);
}

qreal scaleOf(const QWidget& widget) { return widget.window()->font().pointSizeF() / designPoints; }

int scaled(int length, const QWidget& widget) { return times(length, scaleOf(widget)); }

QSize roomFor(const QWidget& window) {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  if (!screen || !visiblePlatform(QGuiApplication::platformName().toStdString()))
    return {QWIDGETSIZE_MAX, QWIDGETSIZE_MAX};
  const QSize frame = window.isVisible() ? window.frameGeometry().size() - window.size() : usualFrame;
  return screen->availableGeometry().size() - frame;
}

}  // namespace kartix::adapters::qt
