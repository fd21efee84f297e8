#pragma once

namespace CLI {
class App;
}

namespace kartix::host {

/// `kartix orders`: the order book of the installation.
void addOrdersCommand(CLI::App& app, int& exit);

}  // namespace kartix::host
