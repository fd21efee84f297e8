#pragma once

#include <QFont>
#include <QSize>
#include <QStringList>
#include <QWidget>

namespace kartix::adapters::qt {

/// Size of the font that the designs were drawn with.
inline constexpr qreal designPoints = 9;

/// The font of the designs, and what takes its place where it is not installed: windows are laid out for these.
QStringList designFamilies();

/// The first of those that is installed.
QFont designFont(qreal points);

/// Gives the window the designs' font in the size that the desktop is set to, and everything whose size the design
/// fixes the size that goes with it.
void followDesktop(QWidget& window);

/// How much larger the widget's window is than its design.
qreal scaleOf(const QWidget& widget);

/// `length` of the design as it is in the widget's window.
int scaled(int length, const QWidget& widget);

/// The largest size that a window without its frame can have on the screen; without limit off screen.
QSize roomFor(const QWidget& window);

}  // namespace kartix::adapters::qt
