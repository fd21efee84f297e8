#include <algorithm>

#include "adapters/windows/System.h"
#include "adapters/windows/Windows.h"
#include "common/CodePage.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

constexpr UINT windows1252 = 1252;

/// Longest value that is looked at before it is cut to what the caller takes; the system reads no longer ones.
constexpr DWORD longestValue = 65535;

bool fits(std::string_view text, std::string_view forbidden) {
  return !text.empty() && text.find_first_of(forbidden) == std::string_view::npos;
}

bool fitsValue(std::string_view value) {
  using namespace std::string_view_literals;
  return value.find_first_of("\r\n\0"sv) == std::string_view::npos;
}

/// Blanks and quotes at the ends are dropped in reading, and what counts as a blank differs from one version of the
/// system to the next: whatever does not begin and end with an ordinary character gets quotes of its own.
std::string written(const std::string& value) {
  const auto ordinary = [](char c) { return c > ' ' && c < '\x7F' && c != '"' && c != '\''; };
  const bool bare = value.empty() || (ordinary(value.front()) && ordinary(value.back()));
  return bare ? value : "\"" + value + "\"";
}

class WindowsProfileFiles final : public platform::ProfileFiles {
 public:
  std::string GetPrivateProfileString(std::string_view section, std::string_view key, std::string_view fallback,
                                      std::size_t size, std::string_view file) override {
    using namespace std::string_view_literals;
    std::string value;
    const bool readable = fits(section, "\0"sv) && fits(key, "\0"sv) && fits(file, "\0"sv);
    if (!readable || !read(section, key, file, value)) value = fallback;
    return text::left(value, size == 0 ? 0 : size - 1);
  }

  bool WritePrivateProfileString(std::string_view section, std::string_view key, std::string_view value,
                                 std::string_view file) override {
    using namespace std::string_view_literals;
    // The system would take an empty file name for a file of its own.
    if (!fits(file, "\0"sv) || !fits(section, "]\r\n\0"sv) || !fits(key, "=\r\n\0"sv) || !fitsValue(value))
      return false;
    return WritePrivateProfileStringA(codepage::toAnsi(section).c_str(), codepage::toAnsi(key).c_str(),
                                      written(codepage::toAnsi(value)).c_str(), codepage::toAnsi(file).c_str()) != 0;
  }

  std::optional<std::string> asReadBack(std::string_view value) override {
    if (!fitsValue(value)) return std::nullopt;
    return codepage::fromAnsi(codepage::toAnsi(value));
  }

 private:
  /// False when there is no such value: the system then gives what it was told to, of which there are two kinds.
  static bool read(std::string_view section, std::string_view key, std::string_view file, std::string& value) {
    const auto readOr = [&](const char* fallback) {
      std::string buffer(longestValue, '\0');
      buffer.resize(GetPrivateProfileStringA(codepage::toAnsi(section).c_str(), codepage::toAnsi(key).c_str(),
                                             fallback, buffer.data(), longestValue, codepage::toAnsi(file).c_str()));
      return buffer;
    };
    const std::string found = readOr("-");
    if (found == "-" && readOr("+") == "+") return false;
    value = codepage::fromAnsi(found);
    return true;
  }
};

}  // namespace

std::unique_ptr<platform::ProfileFiles> makeWindowsProfileFiles() { return std::make_unique<WindowsProfileFiles>(); }

bool profileCallsKeepBytes() { return GetACP() == windows1252; }

}  // namespace kartix::adapters
