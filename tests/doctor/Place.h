#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/doctor/Finding.h"
#include "platform/ObjectClasses.h"
#include "support/Certificates.h"
#include "support/Listener.h"
#include "support/LoopbackServer.h"
#include "support/TempDir.h"

namespace kartix::test {

/// Gateways in every state, and a database server: what all installations share.
class Neighbourhood {
 public:
  Neighbourhood();

  /// Ports of what answers, by what it is: "sound", "untrusted", "wrong name", "expired", "plain", "closing".
  std::map<std::string, std::string> ports;
  TempDir directory;
  TestAuthority authority{directory.path()};
  PemFiles client;
  PemFiles shortLived;
  PemFiles expired;
  PemFiles locked;  ///< the key has the phrase "geheim04"
  PemFiles stranger;
  std::string databasePort;

  void onServer(const std::string& statement, const std::string& database = "postgres");

 private:
  std::vector<std::unique_ptr<LoopbackServer>> servers_;
  Listener closing_;
};

/// The host's classes as a machine may have them.
struct FewClasses : platform::InstalledClasses {
  std::set<std::string, std::less<>> missing;
  std::set<std::string, std::less<>> broken;
  bool has(std::string_view progId) override { return !missing.contains(progId); }
  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override {
    if (broken.contains(progId)) throw platform::AutomationError("Modul nicht gefunden: " + std::string(progId));
    return nullptr;
  }
};

/// A sound installation, until somebody breaks it.
class Place {
 public:
  explicit Place(Neighbourhood& neighbourhood);

  std::string file(const std::string& name) const { return (directory / name).string(); }
  /// Stores a value, a secret one scrambled.
  void set(const std::string& setting, const std::string& value);
  void setIni(const std::string& text);
  /// Runs statements on the embedded database.
  void onFile(const std::string& statements);
  /// Takes the embedded database's place: one on the server, with all that is needed.
  void moveToServer();
  void onDatabase(const std::string& statement) { around.onServer(statement, database_); }
  /// Keeps every new content from `name`: what it is written to first is taken.
  void block(const std::string& name) const;
  /// Name of that database.
  const std::string& database() const { return database_; }
  host::Findings examine();

  Neighbourhood& around;
  TempDir directory;
  FewClasses classes;

 private:
  std::string database_;
};

}  // namespace kartix::test
