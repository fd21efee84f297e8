#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kartix::test {

/// An empty directory that goes with this object.
class TempDir {
 public:
  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "kartix-XXXXXX").string();
    if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary directory");
    path_ = name;
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
