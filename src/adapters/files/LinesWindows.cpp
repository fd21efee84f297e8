#include <windows.h>
#include <sddl.h>

#include <array>
#include <limits>
#include <string>

#include "adapters/files/LineSplitter.h"
#include "adapters/files/Lines.h"

namespace kartix::adapters {
namespace {

using WideName = std::array<wchar_t, 4096>;

std::error_code systemError() noexcept { return {static_cast<int>(GetLastError()), std::system_category()}; }

std::error_code invalid() noexcept { return std::make_error_code(std::errc::invalid_argument); }

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (valid()) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  operator HANDLE() const { return handle_; }

 private:
  HANDLE handle_;
};

/// Rights for owner, system and administrators alone, whatever the folder would hand on.
class OwnerOnly {
 public:
  OwnerOnly() noexcept {
    ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)", SDDL_REVISION_1,
                                                         &attributes_.lpSecurityDescriptor, nullptr);
  }
  ~OwnerOnly() { LocalFree(attributes_.lpSecurityDescriptor); }
  OwnerOnly(const OwnerOnly&) = delete;
  OwnerOnly& operator=(const OwnerOnly&) = delete;

  bool valid() const { return attributes_.lpSecurityDescriptor != nullptr; }
  SECURITY_ATTRIBUTES* get() { return &attributes_; }

 private:
  SECURITY_ATTRIBUTES attributes_{sizeof attributes_, nullptr, FALSE};
};

/// Turns an absolute path (a drive or a server comes first) into what the system takes, without memory of its own.
bool widen(const std::string& path, WideName& name) noexcept {
  const bool drive = path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
  if (!drive && !path.starts_with("\\\\") && !path.starts_with("//")) return false;
  if (path.find('\0') != std::string::npos) return false;
  return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.c_str(), -1, name.data(),
                             static_cast<int>(name.size())) > 0;
}

/// Far behind every line: whoever only reads is not kept out.
OVERLAPPED lockedByte() noexcept {
  OVERLAPPED place{};
  place.OffsetHigh = std::numeric_limits<LONG>::max();
  return place;
}

/// Waits for the other writers, each of which needs moments; one that hangs must not hang this process too.
std::error_code lock(HANDLE file) noexcept {
  constexpr int tries = 250;
  constexpr DWORD pause = 20;
  for (int i = 0; i < tries; ++i) {
    OVERLAPPED place = lockedByte();
    if (LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0) return {};
    if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) return systemError();
    Sleep(pause);
  }
  return std::make_error_code(std::errc::timed_out);
}

bool writeAll(HANDLE file, std::string_view bytes) noexcept {
  DWORD written = 0;
  return bytes.size() <= std::numeric_limits<DWORD>::max() &&
         WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
         written == bytes.size();
}

bool seek(HANDLE file, LONGLONG place) noexcept {
  LARGE_INTEGER to{};
  to.QuadPart = place;
  return SetFilePointerEx(file, to, nullptr, FILE_BEGIN) != 0;
}

/// Writes `line` behind what there is; takes back what did not go down whole.
std::error_code write(HANDLE file, std::string_view line) noexcept {
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file, &size) == 0) return systemError();
  char last = '\n';
  DWORD count = 0;
  if (size.QuadPart > 0 && (!seek(file, size.QuadPart - 1) || ReadFile(file, &last, 1, &count, nullptr) == 0)) {
    return systemError();
  }
  if (!seek(file, size.QuadPart)) return systemError();
  const bool brokenOff = last != '\n';
  if ((!brokenOff || writeAll(file, "\n")) && writeAll(file, line) && writeAll(file, "\n") &&
      FlushFileBuffers(file) != 0) {
    return {};
  }
  const std::error_code failure = systemError();
  // What cannot be taken back stays as a broken line, which no reader takes for one.
  const bool takenBack = seek(file, size.QuadPart) && SetEndOfFile(file) != 0;
  static_cast<void>(takenBack);
  return failure;
}

Handle open(const WideName& name, DWORD access, DWORD creation, SECURITY_ATTRIBUTES* rights) noexcept {
  constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return Handle(CreateFileW(name.data(), access, shared, rights, creation, FILE_ATTRIBUTE_NORMAL, nullptr));
}

/// Why the last attempt to open failed; the system takes a folder for a question of rights.
std::error_code openFailure(const WideName& name) noexcept {
  const std::error_code failure = systemError();
  const DWORD kind = GetFileAttributesW(name.data());
  return kind != INVALID_FILE_ATTRIBUTES && (kind & FILE_ATTRIBUTE_DIRECTORY) != 0 ? invalid() : failure;
}

}  // namespace

std::error_code appendDurably(const std::string& path, std::string_view line) noexcept {
  WideName name;
  if (!widen(path, name)) return invalid();
  OwnerOnly rights;
  if (!rights.valid()) return systemError();
  const Handle file = open(name, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS, rights.get());
  if (!file.valid()) return openFailure(name);
  if (GetFileType(file) != FILE_TYPE_DISK) return invalid();
  if (const std::error_code failure = lock(file)) return failure;
  const std::error_code failure = write(file, line);
  OVERLAPPED place = lockedByte();
  UnlockFileEx(file, 0, 1, 0, &place);
  return failure;
}

std::error_code readWholeLines(const std::string& path, std::size_t longest,
                               const std::function<void(std::string_view)>& take) {
  WideName name;
  if (!widen(path, name)) return invalid();
  const Handle file = open(name, GENERIC_READ, OPEN_EXISTING, nullptr);
  if (!file.valid()) return GetLastError() == ERROR_FILE_NOT_FOUND ? std::error_code() : openFailure(name);
  if (GetFileType(file) != FILE_TYPE_DISK) return invalid();
  std::array<char, 65536> buffer;
  LineSplitter lines(longest, take);
  for (;;) {
    DWORD count = 0;
    if (ReadFile(file, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) == 0) return systemError();
    if (count == 0) return {};
    lines.add({buffer.data(), count});
  }
}

}  // namespace kartix::adapters
