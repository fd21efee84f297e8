#include "adapters/windows/WholeFile.h"

#include <windows.h>

#include "adapters/windows/Wide.h"

namespace kartix::adapters::windows {
namespace {

bool writeWhole(const std::wstring& file, std::string_view bytes) {
  HANDLE const out = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (out == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool whole = WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
                     written == bytes.size() && FlushFileBuffers(out) != 0;
  CloseHandle(out);
  return whole;
}

}  // namespace

bool replaceWholeFile(const std::string& file, std::string_view bytes) {
  const std::wstring target = wide(file);
  const std::wstring fresh = target + L"." + std::to_wstring(GetCurrentProcessId()) + L".neu";
  if (writeWhole(fresh, bytes) &&
      MoveFileExW(fresh.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
    return true;
  }
  DeleteFileW(fresh.c_str());
  return false;
}

}  // namespace kartix::adapters::windows
