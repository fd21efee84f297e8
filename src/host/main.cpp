#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "adapters/script/Script.h"
#include "adapters/system/System.h"
#include "host/Command.h"
#include "host/DatabaseCommand.h"
#include "host/DemoCommand.h"
#include "host/DoctorCommand.h"
#include "host/GatewayCommand.h"
#include "host/OrdersCommand.h"
#include "host/RunCommand.h"
#include "host/SettingsCommand.h"

namespace {

using namespace kartix::host;

constexpr const char* examples =
    "Examples:\n"
    "  kartix db create host.db\n"
    "  kartix settings set FS.DBName \"$PWD/host.db\"\n"
    "  kartix doctor\n"
    "  kartix run ZKRAnfrage --person 4711 --lfdnr 1 --clerk Meier\n"
    "\n"
    "Each subcommand has a --help of its own.";

int complain(const std::exception& error, int status) {
  std::cerr << "kartix: " << printable(error.what()) << '\n';
  return status;
}

/// What the command has said counts only once it has been written: a full disk must not look like success.
int finish(int status) {
  if (std::cout.flush()) return status;
  std::cerr << "kartix: standard output cannot be written\n";
  // That a script did not fit is the lesser thing: an operation has been carried out, and its result is lost.
  return status == exit_status::scriptDidNotFit || status == exit_status::done ? exit_status::failed : status;
}

/// The library for the arguments says of functions that allocate that they throw nothing.
[[noreturn]] void endWithoutMemory() {
  try {
    if (const auto thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    std::fputs("kartix: not enough memory for the arguments\n", stderr);
    std::_Exit(exit_status::failed);
  } catch (...) {
  }
  std::abort();
}

int runCommand(std::vector<std::string> arguments) {
  CLI::App app("Driver card operations of a licence authority", "kartix");
  int exit = exit_status::done;
  app.set_version_flag("--version", "kartix " KARTIX_VERSION);
  requireSubcommand(app);
  app.footer(examples);
  addDemoCommand(app, exit);
  addRunCommand(app, exit);
  addGatewayCommand(app, exit);
  addDatabaseCommand(app, exit);
  addSettingsCommand(app, exit);
  addDoctorCommand(app, exit);
  addOrdersCommand(app, exit);
  // What the command itself does comes after that.
  const std::terminate_handler usual = std::set_terminate(endWithoutMemory);
  app.parse_complete_callback([usual] { std::set_terminate(usual); });
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? exit_status::done : exit_status::wrongUsage;
  } catch (const UsageError& error) {
    return complain(error, exit_status::wrongUsage);
  } catch (const kartix::adapters::BadInput& error) {
    return complain(error, exit_status::wrongUsage);
  }
  return exit;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    auto arguments = kartix::adapters::system::prepare(argc, argv);
    // The library takes them from the last one on, without the program's name.
    if (!arguments.empty()) arguments.erase(arguments.begin());
    std::reverse(arguments.begin(), arguments.end());
    return finish(runCommand(std::move(arguments)));
  } catch (const std::exception& error) {
    return complain(error, exit_status::failed);
  }
}
