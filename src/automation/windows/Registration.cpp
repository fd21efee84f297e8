#include "automation/windows/Registration.h"

#include <objbase.h>

#include <array>
#include <new>
#include <string>

#include "automation/windows/Identifiers.h"
#include "automation/windows/Server.h"

namespace kartix::automation {
namespace {

const std::wstring classesRoot = L"Software\\Classes\\";
constexpr const wchar_t* description = L"Kartix";

HKEY rootOf(Scope scope) { return scope == Scope::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

void check(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

std::wstring braced(const GUID& id) {
  std::array<wchar_t, 40> text{};
  StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring moduleFile() {
  std::wstring file(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(thisModule(), file.data(), MAX_PATH);
  if (length == 0 || length >= MAX_PATH) throw HRESULT_FROM_WIN32(ERROR_BUFFER_OVERFLOW);
  file.resize(length);
  return file;
}

/// One registration: where it goes, and what belongs to it.
class Entries {
 public:
  explicit Entries(Scope scope) : scope_(scope) {}

  void add(const std::wstring& key, const wchar_t* name, const std::wstring& value) const {
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    check(RegSetKeyValueW(rootOf(scope_), (classesRoot + key).c_str(), name, REG_SZ, value.c_str(), bytes));
  }

  /// The default value of `key`; empty when there is none of at most 259 characters.
  std::wstring read(const std::wstring& key) const {
    std::array<wchar_t, MAX_PATH> value{};
    DWORD bytes = sizeof value;
    const LSTATUS status = RegGetValueW(rootOf(scope_), (classesRoot + key).c_str(), nullptr, RRF_RT_REG_SZ, nullptr,
                                        value.data(), &bytes);
    return status == ERROR_SUCCESS ? value.data() : std::wstring();
  }

  void remove(const std::wstring& key) const {
    const LSTATUS status = RegDeleteTreeW(rootOf(scope_), (classesRoot + key).c_str());
    if (status != ERROR_FILE_NOT_FOUND) check(status);
  }

  /// Takes out a key that holds nothing.
  void removeEmpty(const std::wstring& key) const {
    HKEY open = nullptr;
    if (RegOpenKeyExW(rootOf(scope_), (classesRoot + key).c_str(), 0, KEY_READ, &open) != ERROR_SUCCESS) return;
    DWORD keys = 1;
    DWORD values = 1;
    RegQueryInfoKeyW(open, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                     nullptr);
    RegCloseKey(open);
    if (keys == 0 && values == 0) RegDeleteKeyW(rootOf(scope_), (classesRoot + key).c_str());
  }

 private:
  Scope scope_;
};

void enterClass(const Entries& entries, const Identity& identity, const std::wstring& file) {
  const std::wstring id = braced(identity.classId);
  const std::wstring key = L"CLSID\\" + id;
  const std::wstring name = std::wstring(description) + L": " + identity.name;
  entries.add(key, nullptr, name);
  entries.add(key + L"\\InprocServer32", nullptr, file);
  entries.add(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  entries.add(key + L"\\ProgID", nullptr, identity.versioned);
  entries.add(key + L"\\VersionIndependentProgID", nullptr, identity.name);
  entries.add(key + L"\\TypeLib", nullptr, braced(libraryId));
  entries.add(key + L"\\Programmable", nullptr, L"");
  for (const wchar_t* const called : {identity.name, identity.versioned}) {
    entries.add(called, nullptr, name);
    entries.add(std::wstring(called) + L"\\CLSID", nullptr, id);
  }
  entries.add(std::wstring(identity.name) + L"\\CurVer", nullptr, identity.versioned);
}

void removeClass(const Entries& entries, const Identity& identity) {
  entries.remove(L"CLSID\\" + braced(identity.classId));
  entries.remove(L"Interface\\" + braced(identity.interfaceId));
  // A name that has come to stand for another server's class is that one's.
  for (const wchar_t* const called : {identity.name, identity.versioned}) {
    if (entries.read(std::wstring(called) + L"\\CLSID") == braced(identity.classId)) entries.remove(called);
  }
}

std::wstring libraryKey() { return L"TypeLib\\" + braced(libraryId); }

/// Where the file for systems of `bits` bits stands; both may be there, of one version.
std::wstring libraryFileKey(const wchar_t* bits) { return libraryKey() + L"\\1.0\\0\\win" + bits; }

constexpr bool wide = sizeof(void*) == 8;
constexpr const wchar_t* ownBits = wide ? L"64" : L"32";
constexpr const wchar_t* otherBits = wide ? L"32" : L"64";

void enterLibrary(const Entries& entries, const std::wstring& file) {
  const std::wstring key = libraryKey() + L"\\1.0";
  entries.add(key, nullptr, description);
  entries.add(libraryFileKey(ownBits), nullptr, file);
  entries.add(key + L"\\FLAGS", nullptr, L"0");
  entries.add(key + L"\\HELPDIR", nullptr, file.substr(0, file.find_last_of(L'\\')));
}

void enterInterface(const Entries& entries, const Identity& identity) {
  // The system's own go-between, which knows an interface by its type library.
  constexpr const wchar_t* goBetween = L"{00020424-0000-0000-C000-000000000046}";
  const std::wstring key = L"Interface\\" + braced(identity.interfaceId);
  entries.add(key, nullptr, std::wstring(L"I") + identity.name);
  entries.add(key + L"\\ProxyStubClsid32", nullptr, goBetween);
  entries.add(key + L"\\TypeLib", nullptr, braced(libraryId));
  entries.add(key + L"\\TypeLib", L"Version", L"1.0");
}

void removeLibrary(const Entries& entries) {
  entries.remove(libraryFileKey(ownBits));
  if (entries.read(libraryFileKey(otherBits)).empty()) entries.remove(libraryKey());
}

/// Runs `action`; what it raises becomes the code of the failure.
template <class Action>
HRESULT answered(Action action) noexcept {
  try {
    action();
    return S_OK;
  } catch (HRESULT failure) {
    return failure;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace

HRESULT registerServer(Scope scope) noexcept {
  const HRESULT result = answered([&] {
    const Entries entries(scope);
    const std::wstring file = moduleFile();
    for (const Identity& identity : identities()) {
      enterClass(entries, identity, file);
      enterInterface(entries, identity);
    }
    enterLibrary(entries, file);
  });
  if (FAILED(result)) unregisterServer(scope);
  return result;
}

HRESULT unregisterServer(Scope scope) noexcept {
  // Each by itself: one that cannot be taken out keeps none of the others.
  HRESULT first = answered([&] { removeLibrary(Entries(scope)); });
  for (const Identity& identity : identities()) {
    const HRESULT result = answered([&] { removeClass(Entries(scope), identity); });
    if (SUCCEEDED(first)) first = result;
  }
  // A user who has no classes has none of these either.
  for (const wchar_t* const key : {L"CLSID", L"Interface", L"TypeLib"}) {
    const HRESULT result = answered([&] { Entries(scope).removeEmpty(key); });
    if (SUCCEEDED(first)) first = result;
  }
  return first;
}

}  // namespace kartix::automation
