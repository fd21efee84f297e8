#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// Adds `run`; `exit` receives the exit status.
void addRunCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
