#include <algorithm>
#include <cstring>
#include <utility>

#include "adapters/windows/System.h"
#include "adapters/windows/Wide.h"
#include "adapters/windows/Windows.h"

namespace kartix::adapters {
namespace {

using windows::narrow;
using windows::wide;

/// No setting comes near it.
constexpr std::size_t largestValue = 4U << 20U;

/// An open key below the user's root.
class Key {
 public:
  explicit Key(HKEY key) : key_(key) {}
  ~Key() {
    if (key_) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  HKEY get() const { return key_; }
  explicit operator bool() const { return key_ != nullptr; }

  static Key open(const std::wstring& path) {
    HKEY key = nullptr;
    return Key(RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_QUERY_VALUE, &key) == ERROR_SUCCESS ? key
                                                                                                         : nullptr);
  }

  static Key create(const std::wstring& path) {
    HKEY key = nullptr;
    constexpr REGSAM rights = KEY_QUERY_VALUE | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;
    const LSTATUS made = RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, rights,
                                         nullptr, &key, nullptr);
    return Key(made == ERROR_SUCCESS ? key : nullptr);
  }

 private:
  HKEY key_;
};

/// Nothing for a name that the system would take for another one.
std::optional<std::wstring> name(std::string_view utf8) {
  if (utf8.find('\0') != std::string_view::npos) return std::nullopt;
  return wide(utf8);
}

std::optional<std::wstring> path(std::string_view key) {
  while (key.ends_with('\\')) key.remove_suffix(1);
  return name(key);
}

/// The bytes of a value, however often another process changes their number meanwhile.
std::optional<std::string> bytesOf(const Key& key, const std::wstring& name, DWORD& type) {
  std::string bytes(256, '\0');
  while (bytes.size() <= largestValue) {
    auto size = static_cast<DWORD>(bytes.size());
    const LSTATUS status =
        RegQueryValueExW(key.get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    if (status == ERROR_SUCCESS) {
      bytes.resize(size);
      return bytes;
    }
    if (status != ERROR_MORE_DATA) return std::nullopt;
    bytes.resize(std::max<std::size_t>(size, bytes.size() * 2));
  }
  return std::nullopt;
}

std::string textOf(const std::string& bytes) {
  std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
  std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
  if (text.ends_with(L'\0')) text.pop_back();
  return narrow(text);
}

/// Over the wide calls. Installations have written over the single-byte ones, on machines whose code page is
/// Windows-1252: what lies in the registry then are the characters of that code page, the five bytes that it leaves
/// open being the control characters of the same number. Those are the characters in which `common/CodePage` counts
/// too. So the wide calls find every value where it is and as it is; the single-byte ones would do so only as long
/// as the code page of the process is the one of those days.
class WindowsRegistry final : public platform::Registry {
 public:
  std::optional<platform::RegistryValue> RegQueryValueEx(std::string_view keyPath,
                                                         std::string_view valueName) override {
    const auto keyName = path(keyPath);
    const auto wanted = name(valueName);
    if (!keyName || !wanted) return std::nullopt;
    const Key key = Key::open(*keyName);
    DWORD type = REG_NONE;
    const auto bytes = key ? bytesOf(key, *wanted, type) : std::nullopt;
    if (!bytes) return std::nullopt;
    using Type = platform::RegistryValue::Type;
    platform::RegistryValue value;
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
      value.type = type == REG_SZ ? Type::string : Type::expandString;
      value.text = textOf(*bytes);
    } else if (type == REG_DWORD && bytes->size() == sizeof value.number) {
      value.type = Type::dword;
      std::memcpy(&value.number, bytes->data(), sizeof value.number);
    }
    return value;
  }

  bool RegCreateKeyEx(std::string_view keyPath) override {
    const auto keyName = path(keyPath);
    return keyName && Key::create(*keyName);
  }

  bool RegSetValueEx(std::string_view keyPath, std::string_view valueName, std::string_view text) override {
    const auto keyName = path(keyPath);
    const auto wanted = name(valueName);
    if (!keyName || !wanted) return false;
    const Key key = Key::create(*keyName);
    if (!key) return false;
    const std::wstring value = wide(text);
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key.get(), wanted->c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          size) == ERROR_SUCCESS &&
           // A changed password that is lost with the power keeps everybody out.
           RegFlushKey(key.get()) == ERROR_SUCCESS;
  }
};

}  // namespace

std::unique_ptr<platform::Registry> makeWindowsRegistry() { return std::make_unique<WindowsRegistry>(); }

}  // namespace kartix::adapters
