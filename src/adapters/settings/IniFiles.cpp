#include <algorithm>
#include <optional>

#include "adapters/settings/AtomicFile.h"
#include "adapters/settings/Settings.h"
#include "adapters/settings/TextLines.h"
#include "common/CodePage.h"
#include "common/Paths.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

bool sameName(std::string_view bytes, std::string_view name) {
  return text::equalNoCase(withoutBlanks(bytes), withoutBlanks(name));
}

bool isQuoted(std::string_view value) {
  return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.front() == value.back();
}

/// Where in the lines of an ini file a section and one of its keys stand. Names are single-byte text.
struct Place {
  bool sectionFound = false;
  std::size_t end = 0;  ///< where a new key of the section is to be inserted
  std::optional<std::size_t> keyLine;

  Place(const TextLines& lines, std::string_view section, std::string_view key) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      std::string_view line = withoutBlanks(lines[i]);
      constexpr std::string_view mark = "\xEF\xBB\xBF";
      if (i == 0 && line.starts_with(mark)) line = withoutBlanks(line.substr(mark.size()));
      if (line.starts_with('[')) {
        // Only the first section of a name counts.
        if (sectionFound) return;
        sectionFound = sameName(line.substr(1, line.find(']') - 1), section);
        end = i + 1;
      } else if (sectionFound && !line.empty()) {
        end = i + 1;
        const std::size_t equals = line.find('=');
        if (line.starts_with(';') || equals == std::string_view::npos) continue;
        if (sameName(line.substr(0, equals), key)) {
          keyLine = i;
          return;
        }
      }
    }
  }
};

/// Blanks at the ends and quotes round a value are dropped in reading, so they need quotes of their own.
std::string written(const std::string& value) {
  const bool bare = withoutBlanks(value) == value && !isQuoted(value);
  return bare ? value : "\"" + value + "\"";
}

/// What a line gives that has `written` behind its "=".
std::string_view read(std::string_view written) {
  const std::string_view value = withoutBlanks(written);
  return isQuoted(value) ? value.substr(1, value.size() - 2) : value;
}

bool fitsValue(std::string_view value) {
  using namespace std::string_view_literals;
  return value.find_first_of("\r\n\0"sv) == std::string_view::npos;
}

bool fitsName(std::string_view name, std::string_view forbidden) {
  return !withoutBlanks(name).empty() && name.find_first_of(forbidden) == std::string_view::npos;
}

class IniFiles : public platform::ProfileFiles {
 public:
  std::string GetPrivateProfileString(std::string_view section, std::string_view key, std::string_view fallback,
                                      std::size_t size, std::string_view file) override {
    const std::string found = find(section, key, file).value_or(std::string(fallback));
    return text::left(found, size == 0 ? 0 : size - 1);
  }

  std::shared_ptr<void> hold(std::string_view file) override {
    WatchedFile* const found = watched(file);
    return found ? found->hold() : nullptr;
  }

  bool WritePrivateProfileString(std::string_view section, std::string_view key, std::string_view value,
                                 std::string_view file) override {
    using namespace std::string_view_literals;
    if (file.empty() || isForeignPath(file) || !fitsName(section, "]\r\n\0"sv) || !fitsName(key, "=\r\n\0"sv) ||
        withoutBlanks(key).find_first_of(";[") == 0 || !fitsValue(value)) {
      return false;
    }
    const FileUpdate update(pathOf(file));
    if (!update.held()) return false;
    const FileContent content = update.read(settingsLimit);
    if (content.state == FileContent::State::unusable || !isText(content.bytes)) return false;
    const std::string bytes =
        changed(content.bytes, codepage::toAnsi(section), codepage::toAnsi(key), written(codepage::toAnsi(value)));
    return bytes.size() <= settingsLimit && !update.replace(bytes);
  }

  std::optional<std::string> asReadBack(std::string_view value) override {
    if (!fitsValue(value)) return std::nullopt;
    return codepage::fromAnsi(read(written(codepage::toAnsi(value))));
  }

 private:
  static bool isText(std::string_view bytes) { return bytes.find('\0') == std::string_view::npos; }

  /// A component uses one ini file; the one used last is kept. Null when it cannot be one of this machine.
  WatchedFile* watched(std::string_view file) {
    if (file_ && name_ == file) return &*file_;
    if (file.empty() || isForeignPath(file)) return nullptr;
    file_.reset();
    name_ = file;
    return &file_.emplace(pathOf(file));
  }

  std::optional<std::string> find(std::string_view section, std::string_view key, std::string_view file) {
    if (section.empty() || key.empty()) return std::nullopt;
    WatchedFile* const watch = watched(file);
    if (!watch) return std::nullopt;
    bool changed = false;
    const FileContent& content = watch->content(changed);
    if (changed) {
      lines_.reset();
      if (content.state == FileContent::State::read && isText(content.bytes)) lines_.emplace(content.bytes);
    }
    if (!lines_) return std::nullopt;
    const Place place(*lines_, codepage::toAnsi(section), codepage::toAnsi(key));
    if (!place.keyLine) return std::nullopt;
    const std::string_view line = (*lines_)[*place.keyLine];
    return codepage::fromAnsi(read(line.substr(line.find('=') + 1)));
  }

  static std::string changed(std::string_view bytes, const std::string& section, const std::string& key,
                             const std::string& value) {
    TextLines lines(bytes);
    const Place place(lines, section, key);
    if (place.keyLine) {
      // What stands before the value, blanks included, stays.
      const std::string_view line = lines[*place.keyLine];
      const std::size_t equals = line.find('=') + 1;
      const std::size_t start = std::min(line.find_first_not_of(" \t", equals), line.size());
      lines.replace(*place.keyLine, 1, std::string(line.substr(0, start)) + value);
      return lines.join();
    }
    std::size_t end = place.end;
    if (!place.sectionFound) {
      lines.insert(lines.size(), "[" + section + "]");
      end = lines.size();
    }
    lines.insert(end, key + "=" + value);
    return lines.join();
  }

  std::string name_;  ///< of `file_`
  std::optional<WatchedFile> file_;
  std::optional<TextLines> lines_;
};

}  // namespace

std::unique_ptr<platform::ProfileFiles> makeIniFiles() { return std::make_unique<IniFiles>(); }

}  // namespace kartix::adapters
