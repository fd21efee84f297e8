#include <cstdio>

#include "adapters/canberra/Canberra.h"
#include "adapters/dbe/DbeChooser.h"
#include "adapters/machine/DesktopLoader.h"
#include "adapters/machine/Machine.h"
#include "adapters/postgres/Postgres.h"
#include "adapters/settings/Settings.h"
#include "adapters/settings/UserFile.h"
#include "adapters/sqlite/Sqlite.h"
#include "platform/DbeLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/SoundPlayer.h"

namespace kartix::adapters::machine {
namespace {

/// Pictures of the module, which is loaded for the first of them.
class Images final : public platform::ImageLibrary {
 public:
  std::unique_ptr<platform::Image> load(const std::string& file) override {
    try {
      if (!images_) images_ = desktopParts().makeImages();
      return images_->load(file);
    } catch (const NotLoaded& why) {
      std::fprintf(stderr, "kartix: Bilder können nicht gelesen werden: %s\n", why.what());
      return nullptr;
    }
  }

 private:
  std::unique_ptr<platform::ImageLibrary> images_;
};

/// Windows of the module, which is loaded for the first of them. Without it nothing is shown.
class Windows final : public platform::UserInterface {
 public:
  ShowResult showModal(forms::Form& form) override {
    return ready() ? windows_->showModal(form) : ShowResult::notLoaded;
  }
  void repaint() override {
    if (windows_) windows_->repaint();
  }
  void setHourglass(bool on) override {
    if (ready()) windows_->setHourglass(on);
  }
  void centerForm(forms::Form& form) override {
    if (ready()) windows_->centerForm(form);
  }
  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    if (windows_) windows_->progressReported(form, value, status);
  }

 private:
  bool ready() {
    if (windows_) return true;
    try {
      windows_ = desktopParts().makeUserInterface();
      return true;
    } catch (const NotLoaded& why) {
      if (!told_) std::fprintf(stderr, "kartix: Fenster können nicht gezeigt werden: %s\n", why.what());
      told_ = true;
      return false;
    }
  }

  std::unique_ptr<platform::UserInterface> windows_;
  bool told_ = false;
};

}  // namespace

std::unique_ptr<platform::Registry> makeRegistry(const std::filesystem::path& file) {
  return makeRegFile(file.empty() ? userStore() : file);
}
std::filesystem::path userStore() { return userRegistryFile(); }

std::unique_ptr<platform::ProfileFiles> makeProfileFiles() { return makeIniFiles(); }
std::unique_ptr<platform::DbeLibrary> makeDbe() { return makeDbeChooser(makeSqliteDbe(), makePostgresDbe()); }
std::unique_ptr<platform::ImageLibrary> makeImages() { return std::make_unique<Images>(); }
std::unique_ptr<platform::SoundPlayer> makeSounds() { return makeCanberraSounds(); }
std::unique_ptr<platform::UserInterface> makeUserInterface() { return std::make_unique<Windows>(); }
std::unique_ptr<platform::Stage> makeStage() { return desktopParts().makeStage(); }
std::string missingFonts() { return desktopParts().missingFonts(); }
std::unique_ptr<platform::InstalledClasses> makeInstalledClasses() { return nullptr; }

}  // namespace kartix::adapters::machine
