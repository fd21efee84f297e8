#include "adapters/windows/Windows.h"

#include "adapters/dbe/DbeChooser.h"
#include "adapters/machine/Machine.h"
#include "adapters/settings/Settings.h"
#include "adapters/settings/UserFile.h"
#include "adapters/sqlite/Sqlite.h"
#include "adapters/windows/ui/NativeUi.h"
#include "platform/Stage.h"
#include "platform/UserInterface.h"

namespace kartix::adapters::machine {

std::unique_ptr<platform::Registry> makeRegistry(const std::filesystem::path& file) {
  const std::filesystem::path store = file.empty() ? userStore() : file;
  return store.empty() ? makeWindowsRegistry() : makeRegFile(store);
}
/// Empty unless the environment names a file: settings stand where installations have them.
std::filesystem::path userStore() { return userRegistryFile(); }

/// The system's calls write with the code page of the process. Where that is another one than the files have, they
/// are read and written without it.
std::unique_ptr<platform::ProfileFiles> makeProfileFiles() {
  return profileCallsKeepBytes() ? makeWindowsProfileFiles() : makeIniFiles();
}
std::unique_ptr<platform::DbeLibrary> makeDbe() { return makeDbeChooser(makeSqliteDbe(), makeInstalledDbe()); }
std::unique_ptr<platform::ImageLibrary> makeImages() { return makeWicImages(); }
std::unique_ptr<platform::SoundPlayer> makeSounds() { return makeEventSounds(); }
std::unique_ptr<platform::UserInterface> makeUserInterface() { return makeNativeUserInterface(); }
std::unique_ptr<platform::Stage> makeStage() { return makeNativeStage(); }
std::string missingFonts() { return missingNativeFonts(); }
std::unique_ptr<platform::InstalledClasses> makeInstalledClasses() { return makeAutomationClasses(); }

}  // namespace kartix::adapters::machine
