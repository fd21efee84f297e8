#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace kartix::platform {
class DbeLibrary;
class ImageLibrary;
class InstalledClasses;
class ProfileFiles;
class Registry;
class SoundPlayer;
class Stage;
class UserInterface;
}  // namespace kartix::platform

/// The parts that differ from one system to the next, as the system at hand has them. What every system has alike
/// (transport, documents, clock, files) stands in the adapters themselves.
namespace kartix::adapters::machine {

/// The settings store in `file` (`adapters/settings`); an empty one stands for the user's own.
std::unique_ptr<platform::Registry> makeRegistry(const std::filesystem::path& file);
/// The file of the user's own store; empty where the system keeps it in no file of ours.
std::filesystem::path userStore();
std::unique_ptr<platform::ProfileFiles> makeProfileFiles();

/// The client of the host database: the embedded engine for a connection without a server address, else that of the
/// servers.
std::unique_ptr<platform::DbeLibrary> makeDbe();

std::unique_ptr<platform::ImageLibrary> makeImages();
std::unique_ptr<platform::SoundPlayer> makeSounds();
std::unique_ptr<platform::UserInterface> makeUserInterface();
/// Throws `std::runtime_error` when what shows windows is not installed whole.
std::unique_ptr<platform::Stage> makeStage();

/// Names of the fonts of which the windows need one, when none of them is installed; else empty. Throws like
/// `makeStage`.
std::string missingFonts();

/// The automation classes that are installed on the machine; nothing on a system that has none.
std::unique_ptr<platform::InstalledClasses> makeInstalledClasses();

}  // namespace kartix::adapters::machine
