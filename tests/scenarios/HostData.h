#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "scenarios/Scenario.h"

namespace kartix::test {

/// The host database of a scenario.
class HostData {
 public:
  virtual ~HostData() = default;

  /// Settings that lead to it.
  virtual Json settings() const = 0;
  /// Makes the host's tables, and nothing else, and executes `statements`, all or none. Raises `BadScenario`.
  virtual void make(const std::vector<std::string>& statements) = 0;
};

/// A file `host.db` in `directory`.
std::unique_ptr<HostData> hostFile(const std::filesystem::path& directory);
/// The database that this process has on the server which KARTIX_TEST_POSTGRES names; nothing when it names none.
std::unique_ptr<HostData> hostOnServer();

}  // namespace kartix::test
