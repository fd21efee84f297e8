#pragma once

#include <memory>
#include <string>

#include "platform/ImageLibrary.h"
#include "platform/Stage.h"
#include "platform/UserInterface.h"

namespace kartix::adapters {

/// Shows forms as windows to a clerk. The application object is made for the first window when the host has none, and
/// goes with the last. Without a display that answers, or with an application object that is not one for windows
/// of this thread, forms are not shown (`ShowResult` says why); the process is never ended for it. All calls are made
/// from one thread, the host's user-interface thread.
std::unique_ptr<platform::UserInterface> makeQtUserInterface();

/// Shows the windows of a play: on the display when there is one, else off screen, where their pictures can be taken
/// all the same.
std::unique_ptr<platform::Stage> makeQtStage();

/// Names of the fonts of which windows need one, when none of them is installed; else empty. Needs no display.
std::string missingQtFonts();

/// Pictures over Qt's image reader; JPEG first of all, and whatever plug-ins are installed. Needs neither a display
/// nor an application object; a library and its pictures may be used from any one thread at a time. Files are written
/// at quality 90.
std::unique_ptr<platform::ImageLibrary> makeQtImages();

}  // namespace kartix::adapters
