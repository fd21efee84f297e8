#pragma once

#include <memory>
#include <string>

#include "platform/ImageLibrary.h"
#include "platform/Stage.h"
#include "platform/UserInterface.h"

namespace kartix::adapters::machine {

/// What the module of windows and pictures offers. It is a library of its own, so that a host does not load the
/// toolkit before it needs it.
struct DesktopParts {
  std::unique_ptr<platform::UserInterface> (*makeUserInterface)();
  std::unique_ptr<platform::Stage> (*makeStage)();
  std::unique_ptr<platform::ImageLibrary> (*makeImages)();
  std::string (*missingFonts)();
};

}  // namespace kartix::adapters::machine
