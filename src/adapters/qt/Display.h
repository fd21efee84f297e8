#pragma once

#include <optional>
#include <string>

namespace kartix::adapters::qt {

/// The platform plug-in, with its arguments ("xcb", "offscreen", ...), on which windows can be opened now: the first
/// of those that `QT_QPA_PLATFORM` names, or else of those that suit the session, whose plug-in loads and whose
/// display answers within a few seconds. Nothing when there is none. Asking has no effect on the display.
std::optional<std::string> usablePlatform();

/// True when a person can see the windows of platform `name`.
bool visiblePlatform(const std::string& name);

}  // namespace kartix::adapters::qt
