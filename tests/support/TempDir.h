#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace kartix::test {

/// An empty directory that goes with this object.
class TempDir {
 public:
  explicit TempDir(const std::filesystem::path& place = std::filesystem::temp_directory_path()) {
    std::random_device random;
    do {
      path_ = place / ("kartix-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

}  // namespace kartix::test
