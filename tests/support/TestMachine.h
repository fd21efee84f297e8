#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "adapters/settings/Settings.h"
#include "platform/Clock.h"
#include "platform/DbeLibrary.h"
#include "platform/FileSystem.h"
#include "platform/HttpLibrary.h"
#include "platform/ImageLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"
#include "platform/XmlLibrary.h"
#include "runtime/Runtime.h"
#include "support/TempDir.h"

namespace kartix::test {

/// A clock that stands until it is set.
class StandingClock : public platform::Clock {
 public:
  platform::LocalTime time{2026, 3, 9, 7, 5, 4};
  platform::LocalTime now() override { return time; }
};

/// What the tests of the lower rooms never reach: it is there, and does nothing.
struct IdleParts : platform::FileSystem,
                   platform::HttpLibrary,
                   platform::XmlLibrary,
                   platform::ImageLibrary,
                   platform::ObjectClasses,
                   platform::SoundPlayer,
                   platform::UserInterface {
  std::string nativePath(std::string_view path) override { return std::string(path); }
  std::optional<std::string> findFile(std::string_view) override { return std::nullopt; }
  std::error_code appendLine(const std::string&, std::string_view) noexcept override { return {}; }
  std::error_code readLines(const std::string&, const std::function<void(std::string_view)>&) override { return {}; }
  std::int32_t TESSELHTTPgetDLLVersion() override { return -1; }
  std::unique_ptr<platform::HttpRequest> TESSELHTTPCreate() override { return nullptr; }
  std::string TESSELHTTPgetErrorDesc(std::int32_t) override { return {}; }
  std::string TESSELHTTPbase64encode(std::string_view) override { return {}; }
  std::unique_ptr<platform::XmlDocument> createDocument(std::string_view) override { return nullptr; }
  std::optional<std::string> decode(std::string_view) override { return std::nullopt; }
  std::unique_ptr<platform::Image> load(const std::string&) override { return nullptr; }
  std::unique_ptr<platform::AutomationObject> createObject(std::string_view) override {
    throw platform::AutomationError("no classes");
  }
  void playSound(std::string_view) override {}
  ShowResult showModal(forms::Form&) override { return ShowResult::noDisplay; }
  void repaint() override {}
  void setHourglass(bool) override {}
  void centerForm(forms::Form&) override {}
  void progressReported(const forms::Form&, int, std::string_view) override {}
};

/// Keeps the messages that a clerk would have seen, as "caption|text".
class MessageLog : public MessageWindow {
 public:
  std::int16_t showMessage(const Message& message) override {
    shown.push_back(message.caption + "|" + message.text);
    last = message;
    return 1;
  }
  void showSystemMessage(std::string_view text, std::string_view caption) override {
    shown.push_back(std::string(caption).append("|").append(text));
  }
  /// The messages since the last call.
  std::vector<std::string> take() { return std::exchange(shown, {}); }

  std::vector<std::string> shown;
  Message last;
};

/// A runtime over settings files of its own and the database library it is given.
struct TestMachine {
  explicit TestMachine(std::unique_ptr<platform::DbeLibrary> library) : dbe(std::move(library)) {
    runtime.reporting.setMessageWindow(&messages);
  }

  TempDir directory;
  std::unique_ptr<platform::Registry> registry = adapters::makeRegFile(directory / "registry.reg");
  std::unique_ptr<platform::ProfileFiles> files = adapters::makeIniFiles();
  std::unique_ptr<platform::DbeLibrary> dbe;
  StandingClock clock;
  IdleParts idle;
  MessageLog messages;
  Runtime runtime{{*registry, *files, idle, *dbe, idle, idle, idle, idle, idle, idle, clock}};
};

}  // namespace kartix::test
