#include "adapters/canberra/Canberra.h"
#include "adapters/dbe/DbeChooser.h"
#include "adapters/machine/Machine.h"
#include "adapters/postgres/Postgres.h"
#include "adapters/qt/Qt.h"
#include "adapters/settings/Settings.h"
#include "adapters/settings/UserFile.h"
#include "adapters/sqlite/Sqlite.h"
#include "platform/DbeLibrary.h"
#include "platform/ImageLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/SoundPlayer.h"
#include "platform/Stage.h"
#include "platform/UserInterface.h"

namespace kartix::adapters::machine {

std::unique_ptr<platform::Registry> makeRegistry(const std::filesystem::path& file) {
  return makeRegFile(file.empty() ? userStore() : file);
}
std::filesystem::path userStore() { return userRegistryFile(); }

std::unique_ptr<platform::ProfileFiles> makeProfileFiles() { return makeIniFiles(); }
std::unique_ptr<platform::DbeLibrary> makeDbe() { return makeDbeChooser(makeSqliteDbe(), makePostgresDbe()); }
std::unique_ptr<platform::ImageLibrary> makeImages() { return makeQtImages(); }
std::unique_ptr<platform::SoundPlayer> makeSounds() { return makeCanberraSounds(); }
std::unique_ptr<platform::UserInterface> makeUserInterface() { return makeQtUserInterface(); }
std::unique_ptr<platform::Stage> makeStage() { return makeQtStage(); }
std::string missingFonts() { return missingQtFonts(); }
std::unique_ptr<platform::InstalledClasses> makeInstalledClasses() { return nullptr; }

}  // namespace kartix::adapters::machine
