#pragma once

#include <filesystem>
#include <memory>

#include "platform/DbeLibrary.h"
#include "platform/ImageLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/SoundPlayer.h"

namespace kartix::adapters {

/// The settings below HKEY_CURRENT_USER of the user whom the process runs as, in the view of the registry that
/// belongs to the process: a host of 32 bits sees what hosts of 32 bits have stored.
std::unique_ptr<platform::Registry> makeWindowsRegistry();

/// Ini files through the system's profile calls, in its single-byte code page, wherever the system keeps them: a name
/// without a folder is looked for in the Windows folder, and mappings of the registry are heeded.
std::unique_ptr<platform::ProfileFiles> makeWindowsProfileFiles();

/// True when the profile calls of this process keep every byte of a value: when its code page is Windows-1252.
bool profileCallsKeepBytes();

/// The installed client library of the database server, DBETXT32.DLL: looked for beside this program or library, then
/// where the system looks for libraries, at the first `DBE_Initialize`; never in the current folder. Where it is
/// missing or not whole, the client does not start.
std::unique_ptr<platform::DbeLibrary> makeInstalledDbe();

/// Classes that are registered on this machine, late bound on the calling thread, which is made a single-threaded
/// apartment when it is in none yet.
std::unique_ptr<platform::InstalledClasses> makeAutomationClasses();

/// Pictures over the Windows Imaging Component.
std::unique_ptr<platform::ImageLibrary> makeWicImages();

/// The sounds that the user has chosen for the system's events; nothing is heard when there is none.
std::unique_ptr<platform::SoundPlayer> makeEventSounds();

}  // namespace kartix::adapters
