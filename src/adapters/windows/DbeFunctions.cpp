#include "adapters/windows/DbeFunctions.h"

#include <algorithm>
#include <bit>
#include <cwchar>
#include <cwctype>
#include <string>
#include <string_view>
#include <vector>

namespace kartix::adapters::windows {
namespace {

constexpr std::wstring_view libraryName = L"\\DBETXT32.DLL";

/// What the system writes into a buffer of its own choice of length.
template <class Write>
std::wstring written(Write write) {
  std::wstring text(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = write(text.data(), static_cast<DWORD>(text.size()));
    if (length < text.size()) return text.substr(0, length);
    if (length == 0 || text.size() > 0xFFFF) return {};
    text.resize(text.size() * 2);
  }
}

std::wstring folderOf(HMODULE module) {
  const std::wstring file =
      written([&](wchar_t* buffer, DWORD size) { return GetModuleFileNameW(module, buffer, size); });
  return file.substr(0, file.rfind(L'\\') == std::wstring::npos ? 0 : file.rfind(L'\\'));
}

/// The program or library that this function is part of.
HMODULE ownModule() {
  HMODULE module = nullptr;
  constexpr DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  GetModuleHandleExW(byAddress, std::bit_cast<LPCWSTR>(&ownModule), &module);
  return module;
}

bool isAbsolute(std::wstring_view folder) {
  const bool drive = folder.size() > 2 && std::iswalpha(folder[0]) && folder[1] == L':' && folder[2] == L'\\';
  return drive || folder.starts_with(L"\\\\");
}

/// The folders in which the system looks for libraries, but for the current one: whoever has opened a document there
/// must not find a library of that folder loaded.
std::vector<std::wstring> folders() {
  std::vector<std::wstring> result = {
      folderOf(ownModule()), folderOf(nullptr),
      written([](wchar_t* to, DWORD size) { return GetSystemDirectoryW(to, size); }),
      written([](wchar_t* to, DWORD size) { return GetWindowsDirectoryW(to, size); })};
  const std::wstring path =
      written([](wchar_t* to, DWORD size) { return GetEnvironmentVariableW(L"PATH", to, size); });
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find(L';', start), path.size());
    result.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  std::erase_if(result, [](const std::wstring& folder) { return !isAbsolute(folder); });
  return result;
}

template <class Function>
bool take(HMODULE library, const char* name, Function& function) {
  function = std::bit_cast<Function>(GetProcAddress(library, name));
  return function != nullptr;
}

}  // namespace

std::optional<DbeFunctions> loadDbe() {
  HMODULE library = nullptr;
  for (const std::wstring& folder : folders()) {
    const std::wstring file = folder + std::wstring(libraryName);
    if (GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES) continue;
    library = LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (library) break;
  }
  if (!library) return std::nullopt;
  DbeFunctions to{};
  const bool whole =
      take(library, "DBE_Initialize", to.DBE_Initialize) && take(library, "DBE_Connect", to.DBE_Connect) &&
      take(library, "DBE_OpenDataBase", to.DBE_OpenDataBase) && take(library, "DBE_Query", to.DBE_Query) &&
      take(library, "DBE_GetNextEntry", to.DBE_GetNextEntry) &&
      take(library, "DBE_CloseCursor", to.DBE_CloseCursor) && take(library, "DBE_Execute", to.DBE_Execute) &&
      take(library, "DBE_Disconnect", to.DBE_Disconnect) && take(library, "DBE_CLEANUP", to.DBE_CLEANUP) &&
      take(library, "DBE_COPYBUF", to.DBE_COPYBUF) && take(library, "TXT_BUFFERSIZE", to.TXT_BUFFERSIZE) &&
      take(library, "TXT_DBTOWIN", to.TXT_DBTOWIN);
  if (!whole) return std::nullopt;
  return to;
}

}  // namespace kartix::adapters::windows
