#pragma once

#include <filesystem>
#include <memory>

#include "gateway/OrderBook.h"

namespace kartix {
class Konfiguration;
class Runtime;
}  // namespace kartix

namespace kartix::platform {
class InstalledClasses;
class ProfileFiles;
class Registry;
}  // namespace kartix::platform

namespace kartix::host {

/// An installation as its settings describe it, read the way the component reads them. It shows no window and changes
/// nothing by itself.
class Installation {
 public:
  /// `caFile` names authorities to trust besides the system's own; `installed` stands in for the automation classes
  /// of this machine and outlives the object.
  explicit Installation(std::filesystem::path registryFile, const std::filesystem::path& caFile = {},
                        platform::InstalledClasses* installed = nullptr);
  ~Installation();
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  /// The settings store; empty where it is no file of ours.
  const std::filesystem::path& registryFile() const { return registryFile_; }
  const Konfiguration& settings() const;
  Runtime& runtime();
  platform::Registry& registry();
  platform::ProfileFiles& profileFiles();
  /// The automation classes of this machine; nothing on a system that has none.
  platform::InstalledClasses* installedClasses();

  /// The order book that the settings name. Works as long as this object.
  OrderBook orderBook();

 private:
  struct Parts;

  std::filesystem::path registryFile_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kartix::host
