#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace kartix::platform {
class DbeLibrary;
class HttpLibrary;
class ImageLibrary;
class ObjectClasses;
class Registry;
class SoundPlayer;
class UserInterface;
class XmlLibrary;
}  // namespace kartix::platform

namespace kartix {

class HostObjects;
class Runtime;
class Session;
struct TestClerk;
struct Workplace;

/// What a component is to work with. Whatever is left out is the real one of this machine; what is given outlives the
/// component.
struct Setup {
  std::filesystem::path registryFile;            ///< settings store; empty for the user's own
  std::shared_ptr<platform::Registry> registry;  ///< in place of that file
  std::optional<platform::LocalTime> now;  ///< the clock starts here and runs on; the machine's time when left out
  std::filesystem::path caFile;            ///< PEM file of authorities to trust besides the system's own
  platform::UserInterface* userInterface = nullptr;
  platform::SoundPlayer* sounds = nullptr;
  platform::ObjectClasses* objects = nullptr;  ///< left out: the classes that the host has registered
  /// Puts something around the classes, whichever they are, e.g. for a transcript; left out: nothing.
  std::function<std::unique_ptr<platform::ObjectClasses>(platform::ObjectClasses&)> wrapObjects;
  platform::DbeLibrary* dbe = nullptr;
  platform::HttpLibrary* http = nullptr;
  platform::XmlLibrary* xml = nullptr;
  platform::ImageLibrary* images = nullptr;
  bool testClerk = false;  ///< a test clerk may stand in front of all this, where the settings store permits it
};

/// One component, put together: the machine, the runtime, the session, and the rooms above them.
class Component {
 public:
  explicit Component(const Setup& setup);
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// The component that all objects of this process share unless they are given one. Made at the first call and
  /// never destroyed, so that a host may keep its objects in static storage.
  static Component& shared();

  /// Lets `change` say what the shared component is to be made with. False when it has been made already.
  static bool prepareShared(const std::function<void(Setup&)>& change);

  Runtime& runtime();
  Session& session();
  /// What the windows of the operations work with.
  Workplace& workplace();
  /// The automation classes that the host has registered with this component.
  HostObjects& hostObjects();
  /// From now on the component's own objects stand in for the classes that the host has not registered.
  void useGatewayObjects();

  /// Lets `clerk` play from now on. False when it is not permitted, cannot be used or a window is open.
  bool useTestClerk(const TestClerk& clerk);
  /// What kept the test clerk from playing, or did not fit; empty when nothing did.
  std::string testClerkMismatch();
  /// The process ends: tells of steps that the test clerk has left.
  void endTestClerk() noexcept;
  /// Tells a trace file that has just been opened when a test clerk was asked for and not permitted.
  void traceTestClerk();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kartix
