#include <optional>
#include <system_error>
#include <utility>

#include "adapters/settings/AtomicFile.h"
#include "adapters/settings/RegDocument.h"
#include "adapters/settings/Settings.h"

namespace kartix::adapters {
namespace {

/// Creates the directory of a new settings file with its parents, for its owner only.
void createDirectory(const std::filesystem::path& directory) {
  std::error_code error;
  if (directory.empty() || std::filesystem::exists(directory, error)) return;
  createDirectory(directory.parent_path());
  makeOwnDirectory(directory);
}

/// Why nothing can be read from `content`; empty when something can.
std::string trouble(const FileContent& content) {
  if (content.state == FileContent::State::read) {
    return RegDocument::parse(content.bytes) ? "" : "beschädigt, oder kein Export der Registrierung";
  }
  if (content.failure) return content.failure.message();
  return "keine Datei, oder größer als 4 MiB";
}

class RegFile : public platform::Registry {
 public:
  explicit RegFile(std::filesystem::path file) : file_(std::move(file)) {}

  std::optional<platform::RegistryValue> RegQueryValueEx(std::string_view key, std::string_view name) override {
    bool changed = false;
    const FileContent& content = file_.content(changed);
    if (changed) document_ = parse(content);
    if (!document_) readFailure_ = trouble(content);
    return document_ ? document_->value(key, name) : std::nullopt;
  }

  bool RegCreateKeyEx(std::string_view key) override {
    return update([&](RegDocument& document) { return document.createKey(key); });
  }

  bool RegSetValueEx(std::string_view key, std::string_view name, std::string_view text) override {
    return update([&](RegDocument& document) { return document.setString(key, name, text); });
  }

  bool RegSetValues(const std::vector<platform::RegistryEntry>& entries) override {
    return update([&](RegDocument& document) {
      for (const auto& [key, name, text] : entries) {
        if (!document.setString(key, name, text)) return false;
        auto changed = RegDocument::parse(document.encode());  // which finds its values again
        if (!changed) return false;
        document = std::move(*changed);
      }
      return true;
    });
  }

  bool RegDeleteValue(std::string_view key, std::string_view name) override {
    return update([&](RegDocument& document) {
      document.remove(key, name);
      return true;
    });
  }

  std::string readFailure() const override { return readFailure_; }
  std::shared_ptr<void> hold() override { return file_.hold(); }

  std::string writeFailure() const override { return failure_; }

 private:
  static std::optional<RegDocument> parse(const FileContent& content) {
    if (content.state == FileContent::State::missing) return RegDocument();
    if (content.state == FileContent::State::unusable) return std::nullopt;
    return RegDocument::parse(content.bytes);
  }

  /// Changes what is in the file now, not what was read last: another process may have written meanwhile.
  template <typename Change>
  bool update(Change change) {
    createDirectory(file_.path().parent_path());
    const FileUpdate update(file_.path());
    if (!update.held()) return failed(std::make_error_code(std::errc::operation_would_block).message());
    const FileContent content = update.read(settingsLimit);
    auto document = parse(content);
    if (!document) return failed(registryFileTrouble(file_.path()));
    if (!change(*document)) return failed("ein Export der Registrierung kann es nicht fassen");
    const std::string bytes = document->encode();
    if (content.state == FileContent::State::read && bytes == content.bytes) return true;
    if (bytes.size() > settingsLimit) return failed(std::make_error_code(std::errc::file_too_large).message());
    const std::error_code failure = update.replace(bytes);
    return !failure || failed(failure.message());
  }

  bool failed(std::string why) {
    failure_ = std::move(why);
    return false;
  }

  WatchedFile file_;
  std::optional<RegDocument> document_;
  std::string failure_;
  std::string readFailure_;
};

}  // namespace

std::string registryFileTrouble(const std::filesystem::path& file) { return trouble(readFile(file, settingsLimit)); }

std::unique_ptr<platform::Registry> makeRegFile(std::filesystem::path file) {
  return std::make_unique<RegFile>(std::move(file));
}

}  // namespace kartix::adapters
