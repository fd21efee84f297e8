#include "host/DatabaseCommand.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "adapters/dbe/HostTables.h"
#include "adapters/machine/Machine.h"
#include "adapters/sqlite/HostDatabase.h"
#include "common/Paths.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "host/Command.h"
#include "host/Input.h"
#include "host/RegistryFile.h"
#include "host/Settings.h"
#include "platform/DbeLibrary.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"

namespace kartix::host {
namespace {

struct Options {
  std::string registry;
  std::string file;
  adapters::dbe::ServerDatabase database;
  platform::ServerSecurity security;
};

/// The values that count of the section `FS`.
class Settings {
 public:
  explicit Settings(const std::string& registry)
      : registry_(adapters::machine::makeRegistry(registryFile(registry))) {}

  std::string operator()(std::string_view name) const {
    const Setting& setting = settingEntry("FS", name);
    const std::string value = valueInForce(*registry_, *files_, setting).value;
    return text::trim(setting.secret() ? DecryptLong(value) : value);
  }

 private:
  std::unique_ptr<platform::Registry> registry_;
  std::unique_ptr<platform::ProfileFiles> files_ = adapters::machine::makeProfileFiles();
};

void createFile(const std::string& file) {
  adapters::createHostDatabase(pathOf(file));
  std::cout << "Datenbank angelegt: " << file << '\n';
}

void createTables(const Options& options) {
  const auto dbe = adapters::machine::makeDbe();
  dbe->secure(options.security);
  adapters::dbe::createHostTables(*dbe, options.database);
  std::cout << "Tabellen angelegt: " << options.database.name << " auf " << options.database.server << '\n';
}

void createAsConfigured(Options& options) {
  requireStore(registryFile(options.registry));
  const Settings settings(options.registry);
  options.database = {settings("ServerIP"), settings("ServerPort"), settings("SysUser"), settings("SysPass"),
                      settings("DBName"),   settings("DBUser"),     settings("DBPass")};
  options.security = {settings("ServerTLS"), settings("ServerCA")};
  if (!options.database.server.empty()) {
    createTables(options);
  } else if (!options.database.name.empty()) {
    createFile(options.database.name);
  } else {
    throw UsageError("FS.ServerIP und FS.DBName sind nicht gesetzt: eine Datei angeben, oder --server");
  }
}

void create(Options& options) {
  if (!options.file.empty()) return createFile(options.file);
  if (options.database.server.empty()) return createAsConfigured(options);
  options.database.systemUser = options.database.user;
  options.database.systemPassword = options.database.password =
      readLine("Passwort von " + options.database.user, true);
  createTables(options);
}

void addServerOptions(CLI::App& command, Options& options, CLI::Option& file) {
  CLI::Option* const server =
      command.add_option("--server", options.database.server, "Server, oder mehrere eines Clusters (db1,db2)")
          ->excludes(&file);
  CLI::Option* const name = command.add_option("--database", options.database.name, "Datenbank auf dem Server");
  CLI::Option* const user = command.add_option(
      "--user", options.database.user,
      "Benutzer, dem die Tabellen gehören werden; nach dem Passwort wird gefragt, oder es wird von "
      "der Standardeingabe gelesen");
  server->needs(name)->needs(user);
  for (CLI::Option* const option :
       {name, user, command.add_option("--port", options.database.port, "Port, oder je Server einer"),
        command.add_option("--tls", options.security.mode, "Wie die Einstellung FS.ServerTLS"),
        command.add_option("--ca", options.security.rootCertificate, "Wie die Einstellung FS.ServerCA")}) {
    option->needs(server);
  }
}

}  // namespace

void addDatabaseCommand(CLI::App& app, int& exit) {
  CLI::App* const database = app.add_subcommand("db", "Datenbank des Fachverfahrens");
  requireSubcommand(*database);
  database->footer(
      "Beispiele:\n"
      "  kartix db create /var/lib/kartix/host.db\n"
      "  kartix db create                         (was die Einstellungen des Abschnitts FS nennen)\n"
      "  kartix db create --server db1,db2 --database argo --user argo");
  CLI::App* const create_ = database->add_subcommand("create",
                                                     "Legt eine Datei mit den Tabellen des Fachverfahrens an, oder "
                                                     "die Tabellen auf einem Server; was da ist, bleibt");
  const auto options = std::make_shared<Options>();
  addRegistryOption(*create_, options->registry);
  CLI::Option* const file =
      create_->add_option("FILE", options->file, "Neue Datei; ohne sie gilt, was die Einstellungen nennen");
  addServerOptions(*create_, *options, *file);
  create_->callback([options, &exit] {
    create(*options);
    exit = exit_status::done;
  });
}

}  // namespace kartix::host
