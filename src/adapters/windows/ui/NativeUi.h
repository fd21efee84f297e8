#pragma once

#include <memory>
#include <string>

#include "platform/Stage.h"
#include "platform/UserInterface.h"

namespace kartix::adapters {

/// Shows forms as native windows to a clerk, modal to all windows of the calling thread. Without a desktop that can
/// be seen forms are not shown (`ShowResult` says so). Windows have the system's size of text as far as the host's
/// process is told of it. All calls are made from one thread, the host's user-interface thread.
std::unique_ptr<platform::UserInterface> makeNativeUserInterface();

/// Shows the windows of a play on the desktop, where there is one.
std::unique_ptr<platform::Stage> makeNativeStage();

/// Names of the fonts of which windows need one, when none of them is installed; else empty.
std::string missingNativeFonts();

}  // namespace kartix::adapters
