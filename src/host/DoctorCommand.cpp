#include "host/DoctorCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "host/Command.h"
#include "host/Installation.h"
#include "host/RegistryFile.h"

namespace kartix::host {
namespace {

std::string label(Finding::Level level) {
  switch (level) {
    case Finding::Level::good:
      return coloured("ok   ", Colour::green);
    case Finding::Level::note:
      return coloured("note ", Colour::yellow);
    case Finding::Level::fault:
      break;
  }
  return coloured("FAULT", Colour::red);
}

/// Prints the findings; gives the number of faults.
int report(const Findings& findings) {
  int faults = 0;
  for (const Finding& finding : findings) {
    std::cout << label(finding.level) << "  " << finding.area << ": " << printable(finding.text) << '\n';
    if (!finding.mend.empty()) std::cout << "         -> " << printable(finding.mend) << '\n';
    if (finding.level == Finding::Level::fault) ++faults;
  }
  std::cout << std::flush;
  return faults;
}

int examine(const std::string& registry) {
  Installation installation(registryFile(registry));
  int faults = report(installation.checkSettings());
  faults += report(installation.checkDatabase());
  faults += report(installation.checkClientCertificate());
  faults += report(installation.checkGateway());
  faults += report(installation.checkImages());
  faults += report(installation.checkOrderBook());
  if (faults == 0) return exit_status::done;
  std::cout << faults << (faults == 1 ? " fault" : " faults") << " to mend\n";
  return exit_status::failed;
}

}  // namespace

void addDoctorCommand(CLI::App& app, int& exit) {
  CLI::App* const doctor = app.add_subcommand(
      "doctor", "Check settings, database, gateway, client certificate and images; say what to mend");
  const auto registry = std::make_shared<std::string>();
  addRegistryOption(*doctor, *registry);
  doctor->footer("Ends with 0 when nothing is to be mended, else with 1.\n\nExample:\n  kartix doctor");
  doctor->callback([registry, &exit] { exit = examine(*registry); });
}

}  // namespace kartix::host
