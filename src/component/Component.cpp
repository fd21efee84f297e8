#include "component/Component.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "adapters/clock/SystemClock.h"
#include "adapters/curl/Curl.h"
#include "adapters/files/Files.h"
#include "adapters/libxml2/LibXml.h"
#include "adapters/machine/Machine.h"
#include "adapters/script/TestClerk.h"
#include "common/Text.h"
#include "component/HostObjects.h"
#include "dialogs/MessageWindows.h"
#include "dialogs/Workplace.h"
#include "dialogs/ZEVISPassChange.h"
#include "gateway/KBAInterface.h"
#include "gateway/Login.h"
#include "hostdb/ARGOInterface.h"
#include "hostdb/Session.h"
#include "kartix/Hosting.h"
#include "objects/GatewayObjects.h"
#include "platform/DbeLibrary.h"
#include "platform/FileSystem.h"
#include "platform/HttpLibrary.h"
#include "platform/ImageLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix {
namespace {

/// What was given, or else one of our own, made on the spot.
template <class Part>
class Chosen {
 public:
  template <class Make>
  Chosen(Part* given, Make make) : own_(given ? nullptr : make()), part_(given ? *given : *own_) {}
  Part& operator*() const { return part_; }

 private:
  std::unique_ptr<Part> own_;
  Part& part_;
};

namespace machine = adapters::machine;

/// The component of this process, and until it is made, what it is to be made with.
struct SharedComponent {
  std::mutex mutex;
  Setup setup;
  std::unique_ptr<Component> component;
};

SharedComponent& sharedComponent() {
  // Never destroyed: at the end of the process the libraries underneath may go before the last object of the host.
  static SharedComponent* const process = std::make_unique<SharedComponent>().release();
  return *process;
}

std::unique_ptr<platform::HttpLibrary> transport(const Setup& setup) {
  adapters::CurlOptions options;
  options.caFile = setup.caFile;
  return adapters::makeCurlHttp(options);
}

constexpr const char* notPermitted = "Die Einstellung ZKR.TestClerk erlaubt keinen Testsachbearbeiter";

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

/// True when the settings store permits a test clerk. The ini file has no say: others than the administrator of this
/// place may be able to write it.
bool testClerkPermitted(platform::Registry& registry) {
  const auto value = registry.RegQueryValueEx(std::string(productKey) + "ZKR", "TestClerk");
  if (!value) return false;
  return value->type == platform::RegistryValue::Type::dword ? value->number == 1
                                                             : text::trim(text::untilNul(value->text)) == "1";
}

}  // namespace

/// The machine, on which everything else stands.
struct Machine {
  explicit Machine(const Setup& setup)
      : registry(setup.registry ? setup.registry : machine::makeRegistry(setup.registryFile)),
        clock(adapters::makeSystemClock(setup.now)),
        dbe(setup.dbe, machine::makeDbe),
        http(setup.http, [&] { return transport(setup); }),
        xml(setup.xml, [] { return adapters::makeLibXml(); }),
        images(setup.images, machine::makeImages),
        userInterface(setup.userInterface, machine::makeUserInterface),
        sounds(setup.sounds, machine::makeSounds),
        installedClasses(machine::makeInstalledClasses()),
        hostObjects(installedClasses.get()),
        wrappedObjects(setup.wrapObjects ? setup.wrapObjects(classes(setup)) : nullptr),
        objects(wrappedObjects ? *wrappedObjects : classes(setup)) {
    if (setup.testClerk && testClerkPermitted(*registry)) {
      testClerk.emplace(
          adapters::TestClerk::Machine{*userInterface, *sounds, objects, *clock, adapters::makeSystemClock});
    }
  }

  platform::Platform parts() {
    if (testClerk) {
      auto& front = *testClerk;
      return {*registry, *profileFiles, *files, *dbe, *http, *xml, *images, front, front, front, front};
    }
    return {*registry, *profileFiles, *files, *dbe, *http, *xml, *images, objects, *userInterface, *sounds, *clock};
  }

  platform::ObjectClasses& classes(const Setup& setup) { return setup.objects ? *setup.objects : hostObjects; }

  std::shared_ptr<platform::Registry> registry;
  std::unique_ptr<platform::ProfileFiles> profileFiles = machine::makeProfileFiles();
  std::unique_ptr<platform::FileSystem> files = adapters::makeFiles();
  std::unique_ptr<platform::Clock> clock;
  Chosen<platform::DbeLibrary> dbe;
  Chosen<platform::HttpLibrary> http;
  Chosen<platform::XmlLibrary> xml;
  Chosen<platform::ImageLibrary> images;
  Chosen<platform::UserInterface> userInterface;
  Chosen<platform::SoundPlayer> sounds;
  std::unique_ptr<platform::InstalledClasses> installedClasses;
  HostObjects hostObjects;
  std::unique_ptr<platform::ObjectClasses> wrappedObjects;
  platform::ObjectClasses& objects;
  std::optional<adapters::TestClerk> testClerk;
};

struct Component::Parts {
  explicit Parts(const Setup& setup) : machine(setup) { runtime.reporting.setMessageWindow(&messages); }

  Machine machine;
  Runtime runtime{machine.parts()};
  MessageWindows messages{runtime};
  Session session{runtime};
  ARGOInterface argo{runtime, session};
  KBAInterface kba{runtime};
  PasswordChangeWindow passwordChange{runtime};
  Login login{runtime, kba, passwordChange};
  Workplace workplace{runtime, session, argo, kba, login};
  objects::GatewayObjects gatewayObjects{{runtime, session, kba, login}};
  bool testClerkRefused = false;
};

Component::Component(const Setup& setup) : parts_(std::make_unique<Parts>(setup)) {}
Component::~Component() = default;

namespace {

/// The component of this process, with the test clerk that its environment asks for.
std::unique_ptr<Component> makeShared(Setup setup) {
  setup.testClerk = true;
  auto component = std::make_unique<Component>(setup);
  const TestClerk clerk = {environment("KARTIX_SCRIPT"), environment("KARTIX_TRANSCRIPT"), environment("KARTIX_NOW")};
  if (!clerk.script.empty() || !clerk.transcript.empty() || !clerk.now.empty()) component->useTestClerk(clerk);
  std::atexit([] { Component::shared().endTestClerk(); });
  return component;
}

}  // namespace

Component& Component::shared() {
  SharedComponent& process = sharedComponent();
  const std::lock_guard lock(process.mutex);
  if (!process.component) process.component = makeShared(process.setup);
  return *process.component;
}

bool Component::prepareShared(const std::function<void(Setup&)>& change) {
  SharedComponent& process = sharedComponent();
  const std::lock_guard lock(process.mutex);
  if (process.component) return false;
  change(process.setup);
  return true;
}

bool Component::useTestClerk(const TestClerk& clerk) {
  auto& player = parts_->machine.testClerk;
  if (player) return player->begin({clerk.script, clerk.transcript, clerk.now});
  std::fprintf(stderr, "kartix: %s\n", notPermitted);
  parts_->testClerkRefused = true;
  traceTestClerk();
  return false;
}

void Component::endTestClerk() noexcept {
  if (auto& player = parts_->machine.testClerk) player->end();
}

void Component::traceTestClerk() {
  if (parts_->testClerkRefused) parts_->runtime.trace.TraceLine(notPermitted, trace_level::calls);
}

std::string Component::testClerkMismatch() {
  const auto& player = parts_->machine.testClerk;
  return player ? player->mismatch() : notPermitted;
}

Runtime& Component::runtime() { return parts_->runtime; }
Session& Component::session() { return parts_->session; }
Workplace& Component::workplace() { return parts_->workplace; }
HostObjects& Component::hostObjects() { return parts_->machine.hostObjects; }
void Component::useGatewayObjects() { parts_->machine.hostObjects.setSubstitutes(parts_->gatewayObjects); }

}  // namespace kartix
