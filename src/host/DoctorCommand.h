#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// Adds `doctor`; `exit` receives the exit status.
void addDoctorCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
