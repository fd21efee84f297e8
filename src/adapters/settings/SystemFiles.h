#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

namespace kartix::adapters {

/// What settings files ask of the system, besides `readFile`.

/// Two states of a file that differ have different stamps, unless the file had been changed `justNow`: the times in
/// a stamp move in steps.
struct FileStamp {
  std::uint64_t volume = 0;
  std::uint64_t id = 0;
  std::uint64_t size = 0;
  std::int64_t modified = 0;
  std::int64_t changed = 0;
  bool justNow = false;

  bool sameState(const FileStamp& other) const {
    return volume == other.volume && id == other.id && size == other.size && modified == other.modified &&
           changed == other.changed;
  }
};

/// Nothing when there is no such file.
std::optional<FileStamp> stampOf(const std::filesystem::path& file);

/// Keeps other writers of the same file waiting, in whatever process. Leaves nothing behind, after a crash neither.
class WriterLock {
 public:
  /// Waits at most five seconds. A file system that knows no such lock is used without one.
  explicit WriterLock(const std::filesystem::path& file);
  ~WriterLock();
  WriterLock(const WriterLock&) = delete;
  WriterLock& operator=(const WriterLock&) = delete;

  bool held() const { return held_; }

 private:
  bool held_ = false;
  std::intptr_t handle_;
};

/// Makes the new file `fresh` of `bytes`, with the access rights of `former`, or for its owner alone when that is
/// missing. Without error all of it is on the disk; what was made otherwise is for the caller to remove.
std::error_code writeFresh(const std::filesystem::path& fresh, const std::filesystem::path& former,
                           std::string_view bytes);

/// Puts `fresh` in the place of `file` in one step.
std::error_code takePlace(const std::filesystem::path& fresh, const std::filesystem::path& file);

/// A directory for this user alone.
void makeOwnDirectory(const std::filesystem::path& directory);

}  // namespace kartix::adapters
