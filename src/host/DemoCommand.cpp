#include "host/DemoCommand.h"

#include <CLI/CLI.hpp>
#include <chrono>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

#include "adapters/machine/Machine.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "adapters/system/System.h"
#include "common/Paths.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "host/Command.h"
#include "host/Operation.h"
#include "host/demo/Acts.h"
#include "host/demo/DemoInstallation.h"
#include "host/demo/Narration.h"
#include "platform/Stage.h"
#include "simulator/Simulator.h"

namespace kartix::host {
namespace {

namespace fs = std::filesystem;

struct Options {
  std::string directory;
  std::string screenshots;
};

/// Waited before each step when a person can see the windows.
constexpr std::chrono::milliseconds pause{350};

/// A directory that goes with this object.
class TemporaryDirectory {
 public:
  TemporaryDirectory() : path_(adapters::system::makeTemporaryDirectory("kartix-demo-")) {
    if (path_.empty()) throw CommandFailure("no temporary directory can be made");
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

using Properties = std::vector<std::pair<std::string, std::string>>;

std::string valueOf(const Properties& properties, std::string_view name) {
  for (const auto& [property, value] : properties) {
    if (property == name) return value;
  }
  return {};
}

class Demonstration {
 public:
  Demonstration(const fs::path& directory, const fs::path& screenshots) : installation_(directory) {
    installation_.connectGateway(gateway_.port());
    if (!screenshots.empty()) {
      fs::create_directories(screenshots);
      pictures_ = adapters::picturesIn(screenshots);
    }
  }

  /// Plays every act; False when one did not end as it must.
  bool play() {
    std::cout << "A gateway is simulated at 127.0.0.1:" << gateway_.port()
              << (stage_->onScreen() ? "; the windows are shown.\n"
                                     : "; there is no display, the clerk is played.\n");
    bool good = true;
    for (const Act& act : demoActs()) good = playAct(act) && good;
    installation_.setAgain();
    tellOrders();
    return good;
  }

 private:
  struct Ending {
    std::int32_t result = -1;
    Properties properties;
    std::optional<std::string> mismatch;
  };

  bool playAct(const Act& act) {
    std::cout << "\n"
              << ++number_ << ". " << act.title << "\n  " << act.operation << ", person " << act.person << ", record "
              << act.lfdnr << '\n';
    if (act.before) act.before(installation_, last_);
    gateway_.setScenario(act.scenario);
    const std::size_t requestsBefore = gateway_.exchanges().size();
    std::ostringstream transcript;
    const Ending ending = run(act, transcript);
    keepTranscript(transcript.str());
    narrateTranscript(transcript.str());
    const auto exchanges = gateway_.exchanges();
    narrateExchanges(std::span(exchanges).subspan(requestsBefore));
    if (!valueOf(ending.properties, "kartennr").empty()) last_.kartennr = valueOf(ending.properties, "kartennr");
    return tellEnding(act, ending);
  }

  Ending run(const Act& act, std::ostringstream& out) {
    adapters::Script script = adapters::Script::parse(act.script);
    adapters::Transcript transcript(out);
    adapters::PlayOptions play;
    if (stage_->onScreen()) play.pause = pause;
    // One numbering for all acts.
    if (pictures_) play.picture = [this](const forms::Form& form) { return pictures_(form); };
    const auto clerk = adapters::makeScriptUserInterface(script, &transcript, stage_.get(), std::move(play));
    const auto sounds = adapters::makeTranscriptSounds(transcript);
    Setup setup;
    setup.registryFile = installation_.registryFile();
    setup.now = act.now;
    setup.userInterface = clerk.get();
    setup.sounds = sounds.get();
    setup.wrapObjects = [&](auto& objects) { return adapters::makeRecordingObjects(objects, transcript); };
    Component component(setup);
    component.useGatewayObjects();
    Ending ending;
    {
      dispatch::Object kartix = makeKartix(component);
      if (callInit(kartix, "Demonstration", act.person))
        ending.result = callOperation(kartix, act.operation, act.lfdnr);
      ending.properties = dispatch::properties(kartix);
    }
    ending.mismatch = script.mismatch();
    return ending;
  }

  void keepTranscript(const std::string& transcript) const {
    std::ostringstream name;
    name << std::setw(2) << std::setfill('0') << number_ << ".jsonl";
    std::ofstream(installation_.transcripts() / name.str(), std::ios::binary) << transcript;
  }

  static bool tellEnding(const Act& act, const Ending& ending) {
    std::cout << "  result " << ending.result << '\n';
    if (ending.result == 1) {
      for (const auto& [name, value] : ending.properties) {
        if (value.empty() || value == " " || value == "00.00.0000") continue;
        std::cout << "    " << name << " = " << printable(value) << '\n';
      }
    }
    const bool status = act.scode.empty() || valueOf(ending.properties, "scode") == act.scode;
    if (!ending.mismatch && ending.result == act.result && status) return true;
    std::cout << coloured("  NOT AS EXPECTED: ", Colour::red)
              << ending.mismatch.value_or("result " + std::to_string(act.result) + ", status " + act.scode) << '\n';
    return false;
  }

  void tellOrders() const {
    std::cout << "\nOrders at the personaliser, by their external administration mark:\n";
    for (const simulator::Order& order : gateway_.orders()) {
      std::cout << "  " << order.externalAdministrationMark << "  card " << order.cardNumber << ", ordered "
                << order.date << (order.cancelled ? ", cancelled" : "") << '\n';
    }
  }

  simulator::Simulator gateway_{simulator::SimulatorOptions{}};
  DemoInstallation installation_;
  std::unique_ptr<platform::Stage> stage_ = adapters::machine::makeStage();
  std::function<std::string(const forms::Form&)> pictures_;
  LastCard last_;
  int number_ = 0;
};

int perform(const Options& options) {
  std::optional<TemporaryDirectory> temporary;
  if (options.directory.empty()) temporary.emplace();
  Demonstration demonstration(temporary ? temporary->path() : pathOf(options.directory), pathOf(options.screenshots));
  const bool good = demonstration.play();
  if (!options.screenshots.empty()) std::cout << "\nPictures of the windows: " << options.screenshots << '\n';
  if (!options.directory.empty()) {
    std::cout << "Settings, database, images and transcripts: " << options.directory << '\n';
  }
  std::cout << (good ? coloured("Every act ended as expected.", Colour::green)
                     : coloured("Not every act ended as expected.", Colour::red))
            << std::endl;
  return good ? exit_status::done : exit_status::failed;
}

}  // namespace

void addDemoCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const demo = app.add_subcommand(
      "demo", "Walk through the operations with sample persons, an embedded database and a simulated gateway");
  demo->add_option("--dir", options->directory, "Keep settings, database, images and transcripts here")
      ->type_name("DIR");
  demo->add_option("--screenshots", options->screenshots, "Write a picture of each window here")->type_name("DIR");
  demo->footer(
      "Shows the windows where there is a display. Ends with 0 when every act ended as expected.\n\n"
      "Example:\n"
      "  kartix demo --dir demo --screenshots demo/screenshots");
  demo->callback([options, &exit] { exit = perform(*options); });
}

}  // namespace kartix::host
