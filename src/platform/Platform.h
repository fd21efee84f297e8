#pragma once

namespace kartix::platform {

class Clock;
class DbeLibrary;
class FileSystem;
class HttpLibrary;
class ImageLibrary;
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
  FileSystem& files;
  DbeLibrary& dbe;
  HttpLibrary& http;
  XmlLibrary& xml;
  ImageLibrary& images;
  ObjectClasses& objects;
  UserInterface& userInterface;
  SoundPlayer& sounds;
  Clock& clock;
};

}  // namespace kartix::platform
