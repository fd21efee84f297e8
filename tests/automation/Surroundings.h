#pragma once

#include <map>
#include <memory>
#include <string>

#include "adapters/script/Script.h"
#include "kartix/automation.h"
#include "platform/UserInterface.h"
#include "support/TempDir.h"

namespace kartix::test {

/// The host of the one component that this process shares: settings of its own, a clerk who plays a script, and an
/// automation class, all but the clerk given through the C interface.
class Surroundings {
 public:
  static Surroundings& ofProcess();

  void play(const std::string& script) { script_ = adapters::Script::parse(script); }

  TempDir directory;
  std::map<std::string, std::string> settings;
  /// Answers of the automation object by member; a member that begins with "!" fails with its answer. What is not
  /// listed answers with an empty text.
  std::map<std::string, std::string> answers;
  int objects = 0;  ///< of the automation class that live

 private:
  Surroundings();
  void execute(const std::string& statement);

  adapters::Script script_ = adapters::Script::parse("[]");
  std::unique_ptr<platform::UserInterface> clerk_;
};

}  // namespace kartix::test
