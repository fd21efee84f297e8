#pragma once

#include <QIcon>
#include <QString>

namespace kartix::adapters::qt {

/// The window's own drawings: "question", "exclamation" or "critical"; a null icon for any other name. Sharp at every
/// size and scale.
QIcon drawnIcon(const QString& name);

}  // namespace kartix::adapters::qt
