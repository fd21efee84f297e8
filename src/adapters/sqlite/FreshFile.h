#pragma once

#include <filesystem>

namespace kartix::adapters {

/// An empty file of a name of its own beside `target`, for this user alone. It goes with this object.
class FreshFile {
 public:
  /// Throws `std::system_error` when it cannot be made.
  explicit FreshFile(const std::filesystem::path& target);
  ~FreshFile();
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Gives it the name `target`, but never in place of a file that has appeared there meanwhile. Throws
  /// `std::system_error`.
  void become(const std::filesystem::path& target) const;

 private:
  std::filesystem::path path_;
};

}  // namespace kartix::adapters
