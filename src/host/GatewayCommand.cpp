#include "host/GatewayCommand.h"

#include <CLI/CLI.hpp>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "adapters/system/System.h"
#include "common/Numbers.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "host/Command.h"
#include "host/StateFile.h"
#include "simulator/Accounts.h"
#include "simulator/Simulator.h"

namespace kartix::host {
namespace {

struct Options {
  std::string listen = "127.0.0.1:8080";
  std::string certificate;
  std::string key;
  std::string clientCa;
  std::string state;
  std::string scenario = "none";
  bool verbose = false;
};

struct Address {
  std::string host;
  int port = 0;
};

/// "host:port", an address of IP version 6 in brackets.
Address parseAddress(const std::string& listen) {
  constexpr int lastPort = 65535;
  constexpr std::size_t longestPort = 5;
  const auto colon = listen.rfind(':');
  const std::string host = listen.substr(0, colon);
  const std::string port = colon == std::string::npos ? "" : listen.substr(colon + 1);
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  const bool wellFormed = !host.empty() && (bracketed || host.find_first_of("[]:") == std::string::npos);
  const bool number = text::allDigits(port) && port.size() <= longestPort && leadingInt32(port) <= lastPort;
  if (!wellFormed || !number) throw UsageError("--listen: not an address of the form ADDR:PORT: " + listen);
  return {bracketed ? host.substr(1, host.size() - 2) : host, leadingInt32(port)};
}

simulator::SimulatorOptions simulatorOptions(const Options& options) {
  const Address address = parseAddress(options.listen);
  simulator::SimulatorOptions wishes;
  wishes.host = address.host;
  wishes.port = address.port;
  if (!options.certificate.empty()) {
    wishes.tls = simulator::TlsFiles{options.certificate, options.key, options.clientCa};
  }
  const simulator::ScenarioName* const scenario = simulator::findScenario(options.scenario);
  if (!scenario) {
    throw UsageError("--scenario: there is no \"" + options.scenario + "\"; choose one of " +
                     simulator::scenarioNames());
  }
  wishes.scenario = scenario->scenario;
  if (!options.verbose) return wishes;
  wishes.onExchange = [](const simulator::Exchange& exchange) {
    const std::string request = exchange.request.empty() ? "-" : exchange.request;
    std::cerr << printable(exchange.path + "  " + request + "  ->  " + exchange.outcome) << std::endl;
  };
  return wishes;
}

int serve(const Options& options) {
  simulator::SimulatorOptions wishes = simulatorOptions(options);
  const std::string host = options.listen.substr(0, options.listen.rfind(':'));
  const std::string scheme = wishes.tls ? "https://" : "http://";
  const auto state = options.state.empty() ? nullptr : makeStateFile(pathOf(options.state));
  wishes.state = state.get();
  adapters::system::keepEndRequests();
  try {
    const simulator::Simulator gateway(std::move(wishes));
    std::cout << "Gateway simulator listening on " << scheme << host << ':' << gateway.port() << std::endl;
    if (!std::cout) throw CommandFailure("standard output cannot be written");
    adapters::system::awaitEnd();
  } catch (const simulator::BadFile& failure) {
    throw UsageError(failure.what());
  }
  return exit_status::done;
}

std::string footer() {
  constexpr int nameWidth = 28;
  std::ostringstream text;
  text << "Every path takes every request; sample settings use " << simulator::paths::login << ", "
       << simulator::paths::inquiry << ",\n"
       << simulator::paths::order << " and " << simulator::paths::notification
       << ". A GET of any path lists the accepted orders.\n\nAccounts, all with the password "
       << simulator::samplePassword << ":\n"
       << std::left;
  for (const simulator::SampleAccount& account : simulator::sampleAccounts) {
    text << "  " << std::setw(nameWidth) << account.user << account.description << '\n';
  }
  text << "\nScenarios:\n";
  for (const simulator::ScenarioName& scenario : simulator::scenarios()) {
    text << "  " << std::setw(nameWidth) << scenario.name << scenario.description << '\n';
  }
  text << "\nExamples:\n"
          "  kartix gateway --state gateway.json --verbose\n"
          "  kartix gateway --listen 127.0.0.1:8443 --cert server.pem --key server.key --client-ca ca.pem\n"
          "  kartix gateway --scenario order-accepted-then-closed";
  return text.str();
}

}  // namespace

void addGatewayCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const gateway = app.add_subcommand("gateway", "Simulate the gateway, to try and to test against");
  gateway->add_option("--listen", options->listen, "Where to listen; port 0 takes any free one")
      ->type_name("ADDR:PORT")
      ->capture_default_str();
  CLI::Option* const certificate =
      gateway->add_option("--cert", options->certificate, "Serve TLS with this certificate (PEM)")->type_name("FILE");
  CLI::Option* const key =
      gateway->add_option("--key", options->key, "Its private key (PEM, without pass phrase)")->type_name("FILE");
  certificate->needs(key);
  key->needs(certificate);
  gateway->add_option("--client-ca", options->clientCa, "Demand a client certificate of this authority (PEM)")
      ->type_name("FILE")
      ->needs(certificate);
  gateway->add_option("--state", options->state, "Keep cards, orders and passwords in this file (JSON)")
      ->type_name("FILE");
  gateway->add_option("--scenario", options->scenario, "What to do in place of the usual answers, see below")
      ->type_name("NAME")
      ->capture_default_str();
  gateway->add_flag("--verbose", options->verbose, "A line for each request on standard error");
  gateway->footer(footer());
  gateway->callback([options, &exit] { exit = serve(*options); });
}

}  // namespace kartix::host
