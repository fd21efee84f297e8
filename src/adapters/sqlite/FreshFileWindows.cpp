#include <windows.h>

#include <system_error>

#include "adapters/sqlite/FreshFile.h"

namespace kartix::adapters {
namespace {

[[noreturn]] void fail(DWORD error) {
  if (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS) {
    throw std::system_error(std::make_error_code(std::errc::file_exists));
  }
  throw std::system_error(static_cast<int>(error), std::system_category());
}

std::filesystem::path make(const std::filesystem::path& target) {
  std::filesystem::path name = target;
  name += "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(GetTickCount64());
  HANDLE const file =
      CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) fail(GetLastError());
  CloseHandle(file);
  return name;
}

}  // namespace

FreshFile::FreshFile(const std::filesystem::path& target) : path_(make(target)) {}
FreshFile::~FreshFile() { DeleteFileW(path_.c_str()); }

void FreshFile::become(const std::filesystem::path& target) const {
  if (MoveFileExW(path_.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) == 0) fail(GetLastError());
}

}  // namespace kartix::adapters
