#include "host/RunCommand.h"

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "adapters/canberra/Canberra.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "host/Command.h"
#include "host/LocalTimeText.h"
#include "host/RegistryFile.h"

namespace kartix::host {
namespace {

struct Options {
  std::string operation;
  std::string person;
  std::string lfdnr;
  std::string clerk;
  std::string registry;
  std::string now;
  std::string script;
  std::string transcript;
  std::string objects;
};

}  // namespace

void addRunCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const run = app.add_subcommand("run", "Run one operation and print its result and properties as JSON");
  run->add_option("OPERATION", options->operation,
                  "ZKRAnfrage, FahrerKartenBestellung, KartenMitteilung, KartenStorno, or none")
      ->required()
      ->check(CLI::IsMember({"ZKRAnfrage", "FahrerKartenBestellung", "KartenMitteilung", "KartenStorno", "none"}));
  run->add_option("--person", options->person, "Number of the person")->required();
  run->add_option("--lfdnr", options->lfdnr, "Running number of the person's card record");
  run->add_option("--clerk", options->clerk, "Name of the acting clerk")->required();
  addRegistryOption(*run, options->registry);
  run->add_option("--now", options->now, "Start the clock at this local time")->type_name("YYYY-MM-DDTHH:MM:SS");
  run->add_option("--script", options->script, "Let a script play the clerk, in place of windows")->type_name("FILE");
  run->add_option("--transcript", options->transcript, "Write what the clerk saw and did as JSON lines")
      ->type_name("FILE");
  run->add_option("--objects", options->objects, "Stand-ins for the host application's objects")->type_name("FILE");
}

}  // namespace kartix::host
