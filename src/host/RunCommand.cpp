#include "host/RunCommand.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "adapters/machine/Machine.h"
#include "adapters/script/JsonText.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "common/LocalTimeText.h"
#include "common/Paths.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "host/Command.h"
#include "host/Operation.h"
#include "host/RegistryFile.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"

namespace kartix::host {
namespace {

struct Options {
  std::string operation;
  std::string person;
  std::optional<std::string> lfdnr;
  std::string clerk;
  std::string registry;
  std::string now;
  std::string script;
  std::string transcript;
  std::string objects;
};

constexpr std::int32_t notCarriedOut = -1;

/// The file for the transcript; without one it takes the lines and drops them.
std::ofstream openTranscript(const std::string& file) {
  std::ofstream out;
  if (file.empty()) return out;
  out.open(pathOf(file), std::ios::binary | std::ios::trunc);
  if (!out) throw UsageError("the transcript cannot be written: " + file);
  return out;
}

std::optional<platform::LocalTime> startTime(const std::string& now) {
  if (now.empty()) return std::nullopt;
  const auto time = parseLocalTime(now);
  if (!time) throw UsageError("--now: not a moment of the form YYYY-MM-DDTHH:MM:SS: " + now);
  return time;
}

/// The clerk and the host around the component for one run: windows or a script, sounds, and the host's objects, each
/// with its transcript.
class Surroundings {
 public:
  explicit Surroundings(const Options& options)
      : recorded_(!options.transcript.empty()),
        script_(options.script.empty() ? std::nullopt
                                       : std::optional(adapters::Script::load(pathOf(options.script)))),
        scriptedObjects_(options.objects.empty() ? nullptr : adapters::loadScriptedObjects(pathOf(options.objects))),
        file_(openTranscript(options.transcript)),
        transcript_(file_) {
    if (script_) {
      front_ = adapters::makeScriptUserInterface(*script_, &transcript_);
      sounds_ = adapters::makeTranscriptSounds(transcript_);
    } else if (recorded_) {
      windows_ = adapters::machine::makeUserInterface();
      front_ = adapters::makeRecordingUserInterface(*windows_, transcript_);
      player_ = adapters::machine::makeSounds();
      sounds_ = adapters::makeTranscriptSounds(transcript_, player_.get());
    }
  }

  Setup setup(const Options& options) {
    Setup setup;
    setup.registryFile = registryFile(options.registry);
    setup.now = startTime(options.now);
    setup.userInterface = front_.get();
    setup.sounds = sounds_.get();
    setup.objects = scriptedObjects_.get();
    setup.wrapObjects = [this](auto& objects) { return adapters::makeRecordingObjects(objects, transcript_); };
    return setup;
  }

  /// Once the component is gone: the exit status, with what went wrong on standard error.
  int finish(const Options& options) {
    if (const auto mismatch = script_ ? adapters::endPlay(*script_, &transcript_) : std::nullopt) {
      std::cerr << "kartix: " << printable(options.script) << ": " << *mismatch << '\n';
      return exit_status::scriptDidNotFit;
    }
    if (recorded_ && !file_) throw CommandFailure("the transcript is incomplete: " + options.transcript);
    return exit_status::done;
  }

 private:
  bool recorded_;
  std::optional<adapters::Script> script_;
  std::unique_ptr<platform::ObjectClasses> scriptedObjects_;
  std::ofstream file_;
  adapters::Transcript transcript_;
  std::unique_ptr<platform::UserInterface> windows_;
  std::unique_ptr<platform::UserInterface> front_;
  std::unique_ptr<platform::SoundPlayer> player_;
  std::unique_ptr<platform::SoundPlayer> sounds_;
};

std::string describe(dispatch::Object& kartix, const Options& options, bool ready, std::int32_t result) {
  adapters::JsonText json;
  json.open('{').name("init").boolean(ready).name("operation").text(options.operation);
  json.name("result").number(std::int64_t{result}).name("properties").open('{');
  for (const auto& [name, value] : dispatch::properties(kartix)) json.name(name).text(value);
  return json.close().close().line();
}

/// Runs the operation; gives what standard output is to receive. Whatever it has come to is told, also on a machine
/// that is short of memory.
std::string operate(Component& component, const Options& options) {
  dispatch::Object kartix = makeKartix(component);
  const bool ready = callInit(kartix, options.clerk, options.person);
  const std::int32_t result =
      ready ? callOperation(kartix, options.operation, options.lfdnr.value_or("")) : notCarriedOut;
  try {
    return describe(kartix, options, ready, result);
  } catch (const std::bad_alloc&) {  // a second chance
  }
  try {
    return describe(kartix, options, ready, result);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "kartix: the result was %d, its properties are lost\n", static_cast<int>(result));
    throw;
  }
}

int perform(const Options& options) {
  if (!options.lfdnr && options.operation != "none") throw UsageError("--lfdnr is required");
  startTime(options.now);
  Surroundings surroundings(options);
  std::string outcome;
  {
    Component component(surroundings.setup(options));
    component.useGatewayObjects();
    outcome = operate(component, options);
  }
  std::cout << outcome << std::endl;
  return surroundings.finish(options);
}

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
  addRegistryOption(*run, options->registry, Reader::developer);
  run->add_option("--now", options->now, "Start the clock at this local time")->type_name("YYYY-MM-DDTHH:MM:SS");
  run->add_option("--script", options->script, "Let a script play the clerk, in place of windows")->type_name("FILE");
  run->add_option("--transcript", options->transcript, "Write what the clerk saw and did as JSON lines")
      ->type_name("FILE");
  run->add_option("--objects", options->objects, "Stand-ins for the host application's objects")->type_name("FILE");
  run->footer(
      "Example:\n"
      "  kartix run ZKRAnfrage --person 4711 --lfdnr 1 --clerk Meier --script clerk.json --transcript seen.jsonl");
  run->callback([options, &exit] { exit = perform(*options); });
}

}  // namespace kartix::host
