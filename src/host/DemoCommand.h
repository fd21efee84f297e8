#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// Adds `demo`; `exit` receives the exit status.
void addDemoCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
