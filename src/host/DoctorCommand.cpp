#include "host/DoctorCommand.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "host/Command.h"
#include "host/Installation.h"
#include "host/RegistryFile.h"
#include "host/doctor/Doctor.h"

namespace kartix::host {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string registry;
  bool login = false;
  bool json = false;
};

std::string label(Finding::Level level) {
  switch (level) {
    case Finding::Level::good:
      return coloured("ok     ", Colour::green);
    case Finding::Level::note:
      return coloured("Hinweis", Colour::yellow);
    case Finding::Level::fault:
      break;
  }
  return coloured("FEHLER ", Colour::red);
}

const char* levelName(Finding::Level level) {
  if (level == Finding::Level::fault) return "fault";
  return level == Finding::Level::note ? "note" : "good";
}

void print(const Findings& findings) {
  for (const Finding& finding : findings) {
    std::cout << label(finding.level) << "  " << finding.area << ": " << printable(finding.text) << '\n';
    if (!finding.mend.empty()) std::cout << "         -> " << printable(finding.mend) << '\n';
  }
}

void printJson(const Findings& findings) {
  Json all = Json::array();
  for (const Finding& finding : findings) {
    all.push_back({{"level", levelName(finding.level)},
                   {"area", finding.area},
                   {"setting", finding.setting},
                   {"text", finding.text},
                   {"mend", finding.mend}});
  }
  std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

int examineAndTell(const Options& options) {
  Installation installation(registryFile(options.registry));
  const Findings findings = examine(installation, options.login);
  const auto faults = std::count_if(findings.begin(), findings.end(),
                                    [](const Finding& each) { return each.level == Finding::Level::fault; });
  if (options.json) {
    printJson(findings);
  } else {
    print(findings);
    if (faults > 0) std::cout << faults << " Fehler zu beheben\n";
  }
  return faults == 0 ? exit_status::done : exit_status::failed;
}

}  // namespace

void addDoctorCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const doctor = app.add_subcommand(
      "doctor", "Einstellungen, Datenbank, Gateway, Zertifikat und Bilder prüfen: was zu beheben ist");
  addRegistryOption(*doctor, options->registry);
  doctor->add_flag("--login", options->login,
                   "Auch beim Gateway anmelden; ein falsches Passwort kann dort gezählt werden");
  doctor->add_flag("--json", options->json, "Als JSON");
  doctor->footer(
      "Endet mit 0, wenn nichts zu beheben ist, sonst mit 1.\n\n"
      "Beispiele:\n"
      "  kartix doctor\n"
      "  kartix doctor --login");
  doctor->callback([options, &exit] { exit = examineAndTell(*options); });
}

}  // namespace kartix::host
