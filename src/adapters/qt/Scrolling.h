#pragma once

#include <QScrollArea>
#include <QSize>
#include <QWidget>

namespace kartix::adapters::qt {

/// Makes a window that needs more than `room` fit into it: what stands above its buttons is scrolled, or a list or a
/// text in it takes less room. Buttons, progress and status stay in sight.
void fitInto(QSize room, QWidget& window);

/// Lets the area show a bar at its side, and the keyboard reach it. How much wider that makes it.
int showBar(QScrollArea& area);

}  // namespace kartix::adapters::qt
