#include "host/DatabaseCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "adapters/sqlite/HostDatabase.h"
#include "host/Command.h"

namespace kartix::host {

void addDatabaseCommand(CLI::App& app, int& exit) {
  CLI::App* const database = app.add_subcommand("db", "The embedded host database");
  requireSubcommand(*database);
  database->footer("Example:\n  kartix db create /var/lib/kartix/host.db");
  CLI::App* const create = database->add_subcommand("create", "Make an empty host database with the host's tables");
  const auto file = std::make_shared<std::string>();
  create->add_option("FILE", *file, "File to make; it must not exist yet")->required();
  create->callback([file, &exit] {
    adapters::createHostDatabase(*file);
    std::cout << "Host database created: " << *file << '\n';
    exit = exit_status::done;
  });
}

}  // namespace kartix::host
