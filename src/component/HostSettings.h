#pragma once

#include "kartix/Hosting.h"
#include "platform/Registry.h"

namespace kartix {

/// The settings that the host keeps itself, in place of the settings store. Keys and names become the names that
/// administrators know; secret values are scrambled and unscrambled on the way.
class HostSettings : public platform::Registry {
 public:
  HostSettings(ReadSetting read, WriteSetting write) : read_(std::move(read)), write_(std::move(write)) {}

  std::optional<platform::RegistryValue> RegQueryValueEx(std::string_view key, std::string_view name) override;
  bool RegCreateKeyEx(std::string_view key) override;
  bool RegSetValueEx(std::string_view key, std::string_view name, std::string_view text) override;

 private:
  ReadSetting read_;
  WriteSetting write_;
};

}  // namespace kartix
