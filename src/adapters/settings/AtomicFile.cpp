#include "adapters/settings/AtomicFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <thread>
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

std::filesystem::path directoryOf(const std::filesystem::path& path) {
  return path.has_parent_path() ? path.parent_path() : std::filesystem::path(".");
}

/// The directory itself is locked: that leaves no lock file behind. A file system that knows no such lock is used
/// without one.
bool lock(int directory) {
  using namespace std::chrono_literals;
  const auto deadline = std::chrono::steady_clock::now() + 5s;
  while (flock(directory, LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK && errno != EINTR) return true;
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(5ms);
  }
  return true;
}

bool writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// Owner and mode of the file that is replaced. Another owner can be kept by the administrator only.
bool keepAccess(int file, const std::filesystem::path& former) {
  struct stat status {};
  if (::stat(former.c_str(), &status) != 0) return errno == ENOENT;
  if ((status.st_uid != geteuid() || status.st_gid != getegid()) &&
      ::fchown(file, status.st_uid, status.st_gid) != 0) {
    errno = 0;
  }
  constexpr mode_t permissions = 0777;
  return ::fchmod(file, status.st_mode & permissions) == 0;
}

bool sameFile(const struct stat& a, const struct stat& b) {
  const auto same = [](const timespec& x, const timespec& y) {
    return x.tv_sec == y.tv_sec && x.tv_nsec == y.tv_nsec;
  };
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size && same(a.st_mtim, b.st_mtim) &&
         same(a.st_ctim, b.st_ctim);
}

/// A file changed a moment ago may change again without its time stamps telling, which move in steps.
bool changedJustNow(const struct stat& status) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec - status.st_ctim.tv_sec < 2;
}

}  // namespace

Descriptor::~Descriptor() { close(); }

bool Descriptor::close() {
  const int number = std::exchange(number_, -1);
  return number < 0 || ::close(number) == 0;
}

FileContent readFile(const std::filesystem::path& path, std::size_t limit) {
  // Without O_NONBLOCK a pipe would hold up the caller.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  FileContent content;
  if (!file.valid()) {
    if (errno == ENOENT) content.state = FileContent::State::missing;
    return content;
  }
  struct stat status {};
  if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
      static_cast<std::size_t>(status.st_size) > limit) {
    return content;
  }
  // One byte more than allowed tells a file that grows meanwhile.
  content.bytes.resize(static_cast<std::size_t>(status.st_size) + 1);
  std::size_t size = 0;
  while (size < content.bytes.size()) {
    const ssize_t count = ::read(file.number(), content.bytes.data() + size, content.bytes.size() - size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return {};
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
    if (size == content.bytes.size()) {
      if (size > limit) return {};
      content.bytes.resize(std::min(limit + 1, size * 2));
    }
  }
  content.bytes.resize(size);
  content.state = FileContent::State::read;
  return content;
}

FileUpdate::FileUpdate(std::filesystem::path path)
    : path_(followLinks(std::move(path))),
      fresh_(directoryOf(path_) / ("." + path_.filename().string() + ".new")),
      directory_(::open(directoryOf(path_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      held_(!directory_.valid() || lock(directory_.number())) {
  // The hold makes the fixed name safe: what lies there was left by a writer that was interrupted.
  if (held_) ::unlink(fresh_.c_str());
}

int FileUpdate::createFresh() const {
  return ::open(fresh_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
}

bool FileUpdate::possible() const {
  const Descriptor file(createFresh());
  return file.valid() && ::unlink(fresh_.c_str()) == 0;
}

bool FileUpdate::replace(std::string_view bytes) const {
  Descriptor file(createFresh());
  if (!file.valid()) return false;
  const bool written = writeAll(file.number(), bytes) && keepAccess(file.number(), path_) &&
                       ::fsync(file.number()) == 0 && file.close();
  if (!written || ::rename(fresh_.c_str(), path_.c_str()) != 0) {
    const int reason = errno;
    ::unlink(fresh_.c_str());
    errno = reason;
    return false;
  }
  if (directory_.valid()) ::fsync(directory_.number());
  return true;
}

bool canBeReplaced(const std::filesystem::path& path) {
  const FileUpdate update(path);
  return update.held() && update.possible();
}

bool replaceFile(const std::filesystem::path& path, std::string_view bytes) {
  const FileUpdate update(path);
  return update.held() && update.replace(bytes);
}

const FileContent& WatchedFile::content(bool& changed) {
  struct stat now {};
  const bool present = ::stat(path_.c_str(), &now) == 0;
  changed = !present || !seen_ || !sameFile(*seen_, now);
  if (!changed) return content_;
  content_ = readFile(path_, settingsLimit);
  seen_.reset();
  if (present && !changedJustNow(now)) seen_ = now;
  return content_;
}

}  // namespace kartix::adapters
