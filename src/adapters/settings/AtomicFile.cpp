#include "adapters/settings/AtomicFile.h"

#include <utility>

namespace kartix::adapters {
namespace {

std::filesystem::path followLinks(std::filesystem::path path) {
  constexpr int mostLinks = 40;
  std::error_code error;
  for (int i = 0; i < mostLinks && std::filesystem::is_symlink(path, error); ++i) {
    path = path.parent_path() / std::filesystem::read_symlink(path, error);
  }
  return path;
}

/// A hidden name beside `file`.
std::filesystem::path freshName(const std::filesystem::path& file) {
  std::filesystem::path name(".");
  return file.parent_path() / name.concat(file.filename().native()).concat(".new");
}

}  // namespace

FileUpdate::FileUpdate(std::filesystem::path path)
    : path_(followLinks(std::move(path))), fresh_(freshName(path_)), lock_(path_) {
  // The lock makes the fixed name safe: what lies there was left by a writer that was interrupted.
  if (held()) removeFresh();
}

void FileUpdate::removeFresh() const {
  // A directory of that name is nothing that was left by a write.
  std::error_code error;
  if (!std::filesystem::is_directory(std::filesystem::symlink_status(fresh_, error))) {
    std::filesystem::remove(fresh_, error);
  }
}

bool FileUpdate::possible() const {
  const std::error_code failure = writeFresh(fresh_, path_, {});
  removeFresh();
  return !failure;
}

std::error_code FileUpdate::replace(std::string_view bytes) const {
  std::error_code failure = writeFresh(fresh_, path_, bytes);
  if (!failure) failure = takePlace(fresh_, path_);
  if (failure) removeFresh();
  return failure;
}

bool canBeReplaced(const std::filesystem::path& path) {
  const FileUpdate update(path);
  return update.held() && update.possible();
}

bool replaceFile(const std::filesystem::path& path, std::string_view bytes) {
  const FileUpdate update(path);
  return update.held() && !update.replace(bytes);
}

std::shared_ptr<void> WatchedFile::hold() {
  auto held = held_.lock();
  if (held) return held;
  looked_ = false;
  held = std::make_shared<bool>();
  held_ = held;
  return held;
}

const FileContent& WatchedFile::content(bool& changed) {
  changed = false;
  if (looked_ && !held_.expired()) return content_;
  const std::optional<FileStamp> now = stampOf(path_);
  looked_ = true;
  changed = !now || !seen_ || !seen_->sameState(*now);
  if (!changed) return content_;
  FileContent fresh = readFile(path_, settingsLimit);
  seen_.reset();
  if (fresh.failure == std::errc::io_error && content_.state == FileContent::State::read) {
    // What the disk or the network does not give at the moment still counts as it was read last.
    changed = false;
    return content_;
  }
  content_ = std::move(fresh);
  if (now && !now->justNow) seen_ = now;
  return content_;
}

}  // namespace kartix::adapters
