#include "adapters/windows/ui/Look.h"
#include "adapters/windows/ui/NativeUi.h"

namespace kartix::adapters {

std::string missingNativeFonts() {
  return native::installedFace() == native::fallbackFace ? "Verdana, DejaVu Sans, Tahoma" : "";
}

}  // namespace kartix::adapters
