#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// `kartix gateway`: the gateway simulator, until the command is interrupted or terminated.
void addGatewayCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
