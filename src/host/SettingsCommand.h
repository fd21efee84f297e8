#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// Adds `settings list|get|set|unset|import|export`; `exit` receives the exit status.
void addSettingsCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
