#include "adapters/machine/DesktopParts.h"
#include "adapters/qt/Qt.h"
#include "kartix/Export.h"

namespace {

using namespace kartix::adapters;

constexpr machine::DesktopParts parts = {makeQtUserInterface, makeQtStage, makeQtImages, missingQtFonts};

}  // namespace

/// The name ends with the version: the parts of another one would not fit.
extern "C" KARTIX_EXPORT const machine::DesktopParts* KARTIX_DESKTOP_ENTRY() { return &parts; }
