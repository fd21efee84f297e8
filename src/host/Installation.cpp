#include "host/Installation.h"

#include <string>
#include <utility>

#include "adapters/clock/SystemClock.h"
#include "adapters/curl/Curl.h"
#include "adapters/files/Files.h"
#include "adapters/libxml2/LibXml.h"
#include "adapters/machine/Machine.h"
#include "platform/Clock.h"
#include "platform/DbeLibrary.h"
#include "platform/ImageLibrary.h"
#include "platform/ObjectClasses.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/SoundPlayer.h"
#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix::host {
namespace {

constexpr int connectSeconds = 5;
constexpr int stallSeconds = 10;

class NoWindows final : public platform::UserInterface {
 public:
  ShowResult showModal(forms::Form&) override { return ShowResult::noDisplay; }
  void repaint() override {}
  void setHourglass(bool) override {}
  void centerForm(forms::Form&) override {}
  void progressReported(const forms::Form&, int, std::string_view) override {}
};

class NoObjects final : public platform::ObjectClasses {
 public:
  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override {
    throw platform::AutomationError(std::string(progId));
  }
};

adapters::CurlOptions impatient(const std::filesystem::path& caFile) {
  adapters::CurlOptions options;
  options.caFile = caFile;
  options.connectSeconds = connectSeconds;
  options.stallSeconds = stallSeconds;
  return options;
}

}  // namespace

struct Installation::Parts {
  Parts(const std::filesystem::path& file, const std::filesystem::path& caFile, platform::InstalledClasses* given)
      : registry(adapters::machine::makeRegistry(file)),
        http(adapters::makeCurlHttp(impatient(caFile))),
        ownClasses(given ? nullptr : adapters::machine::makeInstalledClasses()),
        classes(given ? given : ownClasses.get()) {
    runtime.konfiguration.readOnce();
  }

  std::unique_ptr<platform::Registry> registry;
  std::unique_ptr<platform::ProfileFiles> profileFiles = adapters::machine::makeProfileFiles();
  std::unique_ptr<platform::FileSystem> files = adapters::makeFiles();
  std::unique_ptr<platform::DbeLibrary> dbe = adapters::machine::makeDbe();
  std::unique_ptr<platform::HttpLibrary> http;
  std::unique_ptr<platform::XmlLibrary> xml = adapters::makeLibXml();
  std::unique_ptr<platform::ImageLibrary> images = adapters::machine::makeImages();
  std::unique_ptr<platform::SoundPlayer> sounds = adapters::machine::makeSounds();
  std::unique_ptr<platform::Clock> clock = adapters::makeSystemClock();
  std::unique_ptr<platform::InstalledClasses> ownClasses;
  platform::InstalledClasses* classes;
  NoObjects objects;
  NoWindows windows;
  Runtime runtime{{*registry, *profileFiles, *files, *dbe, *http, *xml, *images, objects, windows, *sounds, *clock}};
};

Installation::Installation(std::filesystem::path registryFile, const std::filesystem::path& caFile,
                           platform::InstalledClasses* installed)
    : registryFile_(std::move(registryFile)), parts_(std::make_unique<Parts>(registryFile_, caFile, installed)) {}
Installation::~Installation() = default;

const Konfiguration& Installation::settings() const { return parts_->runtime.konfiguration; }
Runtime& Installation::runtime() { return parts_->runtime; }
platform::Registry& Installation::registry() { return *parts_->registry; }
platform::ProfileFiles& Installation::profileFiles() { return *parts_->profileFiles; }
platform::InstalledClasses* Installation::installedClasses() { return parts_->classes; }

OrderBook Installation::orderBook() { return {*parts_->files, *parts_->clock, settings().Bestellbuch}; }

}  // namespace kartix::host
