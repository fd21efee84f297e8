#include <QFontDatabase>
#include <QStringList>
#include <algorithm>

#include "adapters/qt/Application.h"
#include "adapters/qt/Qt.h"
#include "adapters/qt/Scale.h"

namespace kartix::adapters {

std::string missingQtFonts() {
  const QStringList wanted = qt::designFamilies();
  qt::Application application(qt::Application::Fallback::offScreen);
  if (!application.ready()) return {};
  const QStringList present = QFontDatabase::families();
  const auto isPresent = [&](const QString& font) { return present.contains(font); };
  if (std::any_of(wanted.begin(), wanted.end(), isPresent)) return {};
  return wanted.join(QStringLiteral(", ")).toStdString();
}

}  // namespace kartix::adapters
