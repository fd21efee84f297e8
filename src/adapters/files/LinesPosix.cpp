#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <ctime>

#include "adapters/files/LineSplitter.h"
#include "adapters/files/Lines.h"

namespace kartix::adapters {
namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

std::error_code systemError() noexcept { return {errno, std::generic_category()}; }

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  operator int() const { return descriptor_; }

 private:
  int descriptor_;
};

/// Waits for the other writers, each of which needs moments; one that hangs must not hang this process too.
std::error_code lock(int file) noexcept {
  constexpr int tries = 250;
  constexpr timespec pause{0, 20'000'000};
  for (int i = 0; i < tries; ++i) {
    if (::flock(file, LOCK_EX | LOCK_NB) == 0) return {};
    if (errno != EWOULDBLOCK && errno != EINTR) return systemError();
    ::nanosleep(&pause, nullptr);
  }
  return std::make_error_code(std::errc::timed_out);
}

/// The name of a new file is on the disk only once its folder is.
std::error_code syncFolder(const std::string& path) noexcept {
  std::array<char, 4096> folder{};
  const std::size_t length = path.rfind('/') + 1;
  if (length >= folder.size()) return std::make_error_code(std::errc::filename_too_long);
  std::memcpy(folder.data(), path.data(), length);
  const Descriptor opened(::open(folder.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return opened < 0 || ::fsync(opened) != 0 ? systemError() : std::error_code();
}

/// Writes `line` behind the `size` bytes that there are; takes back what did not go down whole.
std::error_code write(int file, off_t size, std::string_view line) noexcept {
  char last = '\n';
  if (size > 0 && ::pread(file, &last, 1, size - 1) != 1) return systemError();
  char lineFeed = '\n';
  const bool brokenOff = last != '\n';
  const std::array<iovec, 3> parts = {
      {{&lineFeed, brokenOff ? 1U : 0U}, {const_cast<char*>(line.data()), line.size()}, {&lineFeed, 1}}};
  const auto wanted = static_cast<ssize_t>(line.size() + (brokenOff ? 2 : 1));
  const ssize_t written = ::writev(file, parts.data(), static_cast<int>(parts.size()));
  if (written == wanted && ::fdatasync(file) == 0) return {};
  const std::error_code failure =
      written >= 0 && written < wanted ? std::make_error_code(std::errc::no_space_on_device) : systemError();
  // What cannot be taken back stays as a broken line, which no reader takes for one.
  const bool takenBack = written <= 0 || ::ftruncate(file, size) == 0;
  static_cast<void>(takenBack);
  return failure;
}

}  // namespace

std::error_code appendDurably(const std::string& path, std::string_view line) noexcept {
  if (!path.starts_with('/')) return std::make_error_code(std::errc::invalid_argument);
  const bool existed = ::access(path.c_str(), F_OK) == 0;
  const Descriptor file(::open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, ownerOnly));
  if (file < 0) return systemError();
  struct stat status {};
  if (::fstat(file, &status) != 0) return systemError();
  if (!S_ISREG(status.st_mode)) return std::make_error_code(std::errc::invalid_argument);
  if (const std::error_code failure = lock(file)) return failure;
  if (::fstat(file, &status) != 0) return systemError();
  if (const std::error_code failure = write(file, status.st_size, line)) return failure;
  return existed ? std::error_code() : syncFolder(path);
}

std::error_code readWholeLines(const std::string& path, std::size_t longest,
                               const std::function<void(std::string_view)>& take) {
  if (!path.starts_with('/')) return std::make_error_code(std::errc::invalid_argument);
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (file < 0) return errno == ENOENT ? std::error_code() : systemError();
  struct stat status {};
  if (::fstat(file, &status) != 0) return systemError();
  if (!S_ISREG(status.st_mode)) return std::make_error_code(std::errc::invalid_argument);
  std::array<char, 65536> buffer;
  LineSplitter lines(longest, take);
  for (;;) {
    const ssize_t count = ::read(file, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return systemError();
    if (count == 0) return {};
    lines.add({buffer.data(), static_cast<std::size_t>(count)});
  }
}

}  // namespace kartix::adapters
