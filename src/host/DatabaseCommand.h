#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// Adds `db create`; `exit` receives the exit status.
void addDatabaseCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
