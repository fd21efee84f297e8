#include "component/Component.h"
#include "component/HostObjects.h"
#include "component/HostSettings.h"
#include "kartix/CFahrerkarte.h"
#include "kartix/CPersonalien.h"
#include "kartix/DBETXTDatabase.h"
#include "kartix/Hosting.h"
#include "kartix/Kartix.h"
#include "kartix/ObjectClasses.h"
#include "platform/FileSystem.h"
#include "runtime/Guard.h"
#include "runtime/Runtime.h"

// What a host creates without more words belongs to the component that its process shares.

namespace kartix {

Kartix::Kartix() : Kartix(Component::shared()) {}
CPersonalien::CPersonalien() : CPersonalien(Component::shared().runtime()) {}
CFahrerkarte::CFahrerkarte() : CFahrerkarte(Component::shared().runtime()) {}
DBETXTDatabase::DBETXTDatabase() : DBETXTDatabase(Component::shared().runtime()) {}

void registerAutomationClass(const std::string& progId, std::function<std::unique_ptr<AutomationObject>()> create) {
  Component::shared().hostObjects().set(progId, std::move(create));
}

void useGatewayObjects() { Component::shared().useGatewayObjects(); }

std::string imageFile(const std::string& name) {
  platform::FileSystem& files = Component::shared().runtime().machine.files;
  return files.findFile(name).value_or(files.nativePath(name));
}

bool useSettings(ReadSetting read, WriteSetting write) {
  const auto settings = std::make_shared<HostSettings>(std::move(read), std::move(write));
  return Component::prepareShared([&](Setup& setup) { setup.registry = settings; });
}

LastError lastError() {
  const LastMessage& last = Component::shared().runtime().reporting.lastMessage();
  return {last.number, last.text};
}

bool useTestClerk(const TestClerk& clerk) {
  Component& component = Component::shared();
  return guarded(component.runtime(), "useTestClerk", false, [&] { return component.useTestClerk(clerk); });
}

std::string testClerkMismatch() {
  Component& component = Component::shared();
  return guarded(component.runtime(), "testClerkMismatch", std::string("called on another thread"),
                 [&] { return component.testClerkMismatch(); });
}

}  // namespace kartix
