#pragma once

#include <filesystem>
#include <string>

namespace kartix::host {

/// An installation made for a demonstration: settings, embedded host database with sample persons, photos and
/// signatures, all in one directory. What an earlier demonstration left there is replaced, anything else is left
/// alone.
class DemoInstallation {
 public:
  /// Raises an exception with a text for the user when a file cannot be written, or when one of that name is there
  /// that no demonstration made.
  explicit DemoInstallation(const std::filesystem::path& directory);

  /// Names the gateway in the settings; nothing can be exchanged before.
  void connectGateway(int port);

  /// Names a database in the settings that is not there.
  void loseDatabase() const { set("FS.DBName", (directory_ / "gone.db").string()); }
  /// Sets again what acts of the demonstration change: what it leaves behind works with a gateway that has just
  /// begun.
  void setAgain() const;

  std::filesystem::path registryFile() const { return directory_ / "registry.reg"; }
  std::filesystem::path transcripts() const { return directory_ / "transcripts"; }

  /// Runs a statement on the host database, as the host application would. Raises `CommandFailure`.
  void execute(const std::string& statement) const;

 private:
  void set(const char* setting, const std::string& value) const;
  void writeSettings() const;
  void fillDatabase() const;
  void writeImages() const;

  std::filesystem::path directory_;
};

}  // namespace kartix::host
