#include <windows.h>
#include <sddl.h>

#include <algorithm>
#include <string>
#include <utility>

#include "adapters/settings/AtomicFile.h"
#include "adapters/settings/SystemFiles.h"

namespace kartix::adapters {
namespace {

constexpr DWORD pause = 5;
constexpr ULONGLONG longestWait = 5000;
constexpr ULONGLONG shortWait = 200;

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  bool valid() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE get() const { return handle_; }
  bool close() {
    HANDLE const handle = std::exchange(handle_, INVALID_HANDLE_VALUE);
    return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
  }

 private:
  HANDLE handle_;
};

/// Readers keep nobody from putting another file in this one's place.
Handle openToRead(const std::filesystem::path& file) {
  constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  return Handle(
      CreateFileW(file.c_str(), GENERIC_READ, shared, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

std::uint64_t joined(DWORD high, DWORD low) { return std::uint64_t{high} << 32U | low; }

std::int64_t ticks(const FILETIME& time) {
  return static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime));
}

/// The rights of a file, in a buffer as the system wants it; empty when there is no such file.
std::string rightsOf(const std::filesystem::path& file) {
  DWORD size = 0;
  GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::string rights(size, '\0');
  if (size == 0 || GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size) == 0)
    return {};
  return rights;
}

/// Makes a file for owner, system and administrators alone.
Handle createOwn(const std::filesystem::path& file) {
  SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, FALSE};
  ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)", SDDL_REVISION_1,
                                                       &attributes.lpSecurityDescriptor, nullptr);
  if (!attributes.lpSecurityDescriptor) return Handle(INVALID_HANDLE_VALUE);
  HANDLE const made =
      CreateFileW(file.c_str(), GENERIC_WRITE, 0, &attributes, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  LocalFree(attributes.lpSecurityDescriptor);
  return Handle(made);
}

bool writeAll(HANDLE file, std::string_view bytes) {
  DWORD written = 0;
  return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
         written == bytes.size();
}

/// The other writer's file is there, or is just going.
bool taken(DWORD error) { return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED; }

std::error_code systemError(DWORD error) { return {static_cast<int>(error), std::system_category()}; }

/// Opened by one at a time, and gone with whoever has it open, however that ends.
HANDLE lock(const std::filesystem::path& file, bool& held) {
  std::filesystem::path name(L".");
  name = file.parent_path() / name.concat(file.filename().native()).concat(L".lock");
  const ULONGLONG begun = GetTickCount64();
  for (;;) {
    HANDLE const handle = CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                                      FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    const DWORD error = GetLastError();
    const ULONGLONG waited = GetTickCount64() - begun;
    // Where no file can be made at all there is nothing to lock either.
    held = handle != INVALID_HANDLE_VALUE || !taken(error) || (error == ERROR_ACCESS_DENIED && waited > shortWait);
    if (held || waited > longestWait) return handle;
    Sleep(pause);
  }
}

}  // namespace

FileContent readFile(const std::filesystem::path& path, std::size_t limit) {
  FileContent content;
  const Handle file = openToRead(path);
  if (!file.valid()) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) content.state = FileContent::State::missing;
    content.failure = systemError(error);
    return content;
  }
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return content;
  // Also of a file that grows meanwhile.
  constexpr std::size_t piece = 65536;
  std::string bytes;
  for (DWORD count = 1; count > 0;) {
    const std::size_t size = bytes.size();
    bytes.resize(size + piece);
    if (ReadFile(file.get(), bytes.data() + size, piece, &count, nullptr) == 0) {
      content.failure = systemError(GetLastError());
      return content;
    }
    bytes.resize(size + count);
    if (bytes.size() > limit) return content;
  }
  content.bytes = std::move(bytes);
  content.state = FileContent::State::read;
  return content;
}

std::optional<FileStamp> stampOf(const std::filesystem::path& file) {
  const Handle handle = openToRead(file);
  BY_HANDLE_FILE_INFORMATION info{};
  if (!handle.valid() || GetFileInformationByHandle(handle.get(), &info) == 0) return std::nullopt;
  FILETIME now{};
  GetSystemTimeAsFileTime(&now);
  constexpr std::int64_t twoSeconds = 20'000'000;
  const std::int64_t modified = ticks(info.ftLastWriteTime);
  return FileStamp{info.dwVolumeSerialNumber,
                   joined(info.nFileIndexHigh, info.nFileIndexLow),
                   joined(info.nFileSizeHigh, info.nFileSizeLow),
                   modified,
                   ticks(info.ftCreationTime),
                   ticks(now) - modified < twoSeconds};
}

WriterLock::WriterLock(const std::filesystem::path& file)
    : handle_(reinterpret_cast<std::intptr_t>(lock(file, held_))) {}

WriterLock::~WriterLock() {
  HANDLE const handle = reinterpret_cast<HANDLE>(handle_);
  if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

std::error_code writeFresh(const std::filesystem::path& fresh, const std::filesystem::path& former,
                           std::string_view bytes) {
  std::string rights = rightsOf(former);
  Handle file = createOwn(fresh);
  const bool written =
      file.valid() && writeAll(file.get(), bytes) && FlushFileBuffers(file.get()) != 0 && file.close() &&
      (rights.empty() || SetFileSecurityW(fresh.c_str(), DACL_SECURITY_INFORMATION, rights.data()) != 0);
  return written ? std::error_code() : systemError(GetLastError());
}

std::error_code takePlace(const std::filesystem::path& fresh, const std::filesystem::path& file) {
  const ULONGLONG begun = GetTickCount64();
  while (MoveFileExW(fresh.c_str(), file.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0) {
    // A virus scanner or another reader may have it open for moments.
    const DWORD error = GetLastError();
    if (!taken(error) || GetTickCount64() - begun > shortWait) return systemError(error);
    Sleep(pause);
  }
  return {};
}

void makeOwnDirectory(const std::filesystem::path& directory) {
  // Open to those to whom the directory around it is: below the user's profile, to that user.
  CreateDirectoryW(directory.c_str(), nullptr);
}

}  // namespace kartix::adapters
