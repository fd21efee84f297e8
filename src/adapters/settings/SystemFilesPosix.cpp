#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <thread>
#include <utility>

#include "adapters/settings/AtomicFile.h"
#include "adapters/settings/SystemFiles.h"

namespace kartix::adapters {
namespace {

/// An open file descriptor.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : number_(number) {}
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  bool valid() const { return number_ >= 0; }
  /// Closes it; False when the system reports that something was not written.
  bool close();

 private:
  int number_;
};

Descriptor::~Descriptor() { close(); }

bool Descriptor::close() {
  const int number = std::exchange(number_, -1);
  return number < 0 || ::close(number) == 0;
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

std::error_code systemError() { return {errno, std::generic_category()}; }

std::int64_t nanoseconds(const timespec& time) { return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec; }

int openDirectory(const std::filesystem::path& file) {
  return ::open(directoryOf(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

}  // namespace

FileContent readFile(const std::filesystem::path& path, std::size_t limit) {
  // Without O_NONBLOCK a pipe would hold up the caller.
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  FileContent content;
  if (!file.valid()) {
    if (errno == ENOENT) content.state = FileContent::State::missing;
    content.failure = systemError();
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
    if (count < 0) return {FileContent::State::unusable, {}, systemError()};
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

std::optional<FileStamp> stampOf(const std::filesystem::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return std::nullopt;
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return FileStamp{status.st_dev,
                   status.st_ino,
                   static_cast<std::uint64_t>(status.st_size),
                   nanoseconds(status.st_mtim),
                   nanoseconds(status.st_ctim),
                   now.tv_sec - status.st_ctim.tv_sec < 2};
}

WriterLock::WriterLock(const std::filesystem::path& file) : handle_(openDirectory(file)) {
  held_ = handle_ < 0 || lock(static_cast<int>(handle_));
}

WriterLock::~WriterLock() {
  if (handle_ >= 0) ::close(static_cast<int>(handle_));
}

std::error_code writeFresh(const std::filesystem::path& fresh, const std::filesystem::path& former,
                           std::string_view bytes) {
  Descriptor file(::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  const bool written = file.valid() && writeAll(file.number(), bytes) && keepAccess(file.number(), former) &&
                       ::fsync(file.number()) == 0 && file.close();
  return written ? std::error_code() : systemError();
}

std::error_code takePlace(const std::filesystem::path& fresh, const std::filesystem::path& file) {
  if (::rename(fresh.c_str(), file.c_str()) != 0) return systemError();
  // The new name is on the disk only once its directory is.
  if (const Descriptor directory(openDirectory(file)); directory.valid()) ::fsync(directory.number());
  return {};
}

void makeOwnDirectory(const std::filesystem::path& directory) { ::mkdir(directory.c_str(), S_IRWXU); }

}  // namespace kartix::adapters
