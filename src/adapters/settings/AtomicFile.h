#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "adapters/settings/SystemFiles.h"

namespace kartix::adapters {

/// Largest settings file that is read or written, in bytes.
inline constexpr std::size_t settingsLimit = 4U << 20U;

/// Content of a file, or why there is none.
struct FileContent {
  enum class State { read, missing, unusable };

  State state = State::unusable;  ///< unusable: not a regular file, too large, or not readable
  std::string bytes;
  std::error_code failure;  ///< of the system, when that kept it from being read
};

/// Reads a regular file of at most `limit` bytes.
FileContent readFile(const std::filesystem::path& path, std::size_t limit);

/// Exclusive hold on one file, to read it and put a new content in its place. Others who want to update a file of the
/// same directory wait until this object is gone.
///
/// ```cpp
/// FileUpdate update(path);
/// bool written = update.held() && !update.replace("new content");
/// ```
class FileUpdate {
 public:
  /// Follows symbolic links, so that the file they lead to is replaced and not the link. Waits at most five seconds.
  /// Clears away what an interrupted update of this file has left.
  explicit FileUpdate(std::filesystem::path path);

  bool held() const { return lock_.held(); }

  FileContent read(std::size_t limit) const { return readFile(path_, limit); }

  /// Puts `bytes` in place of the former content. Whoever opens the file sees either all of the old or all of the new
  /// content, also after a crash. Access rights are kept, a new file gets mode 0600. An error when
  /// nothing was replaced.
  std::error_code replace(std::string_view bytes) const;

  /// True when a new content could be written beside the file, as `replace` does; nothing of that stays.
  bool possible() const;

 private:
  void removeFresh() const;

  std::filesystem::path path_;
  std::filesystem::path fresh_;  ///< where the new content is written before it takes its place
  WriterLock lock_;
};

/// `FileUpdate` for a content that does not depend on the former one.
bool replaceFile(const std::filesystem::path& path, std::string_view bytes);

/// A file that is read again only when it has changed.
class WatchedFile {
 public:
  explicit WatchedFile(std::filesystem::path path) : path_(std::move(path)) {}

  const std::filesystem::path& path() const { return path_; }
  /// The current content; `changed` tells whether it was read anew.
  const FileContent& content(bool& changed);

  /// While the result is kept, the content stays what the first look at it finds.
  std::shared_ptr<void> hold();

 private:
  std::filesystem::path path_;
  FileContent content_;
  std::optional<FileStamp> seen_;
  std::weak_ptr<void> held_;
  bool looked_ = false;  ///< since it is held
};

}  // namespace kartix::adapters
