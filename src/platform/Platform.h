#pragma once

namespace kartix::platform {

class Clock;
class DbeLibrary;
class HttpLibrary;
class ObjectClasses;
class ProfileFiles;
class Registry;
class SoundPlayer;
class UserInterface;
class XmlLibrary;

/// Everything the component asks of the machine it runs on. The parts outlive whoever uses them.
struct Platform {
  Registry& registry;
  ProfileFiles& profileFiles;
  DbeLibrary& dbe;
  HttpLibrary& http;
  XmlLibrary& xml;
  ObjectClasses& objects;
  UserInterface& userInterface;
  SoundPlayer& sounds;
  Clock& clock;
};

}  // namespace kartix::platform
