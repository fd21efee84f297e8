#include "host/SettingsCommand.h"

#include <CLI/CLI.hpp>
#include <array>
#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "adapters/machine/Machine.h"
#include "adapters/settings/Settings.h"
#include "adapters/system/System.h"
#include "common/Paths.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "host/Command.h"
#include "host/Input.h"
#include "host/RegistryFile.h"
#include "host/Settings.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"

namespace kartix::host {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string registry;
  std::string name;
  std::optional<std::string> value;
  bool scrambled = false;
  bool json = false;
  std::string file;
};

const char* typeName(SettingType type) {
  constexpr std::array<const char*, 10> names = {"text",   "password", "path",   "service",   "address",
                                                 "number", "ports",    "on/off", "selection", "mode"};
  return names.at(static_cast<std::size_t>(type));
}

std::unique_ptr<platform::Registry> openStore(const Options& options) {
  return adapters::machine::makeRegistry(registryFile(options.registry));
}

/// The form in which a secret is stored. Raises `UsageError` for one that would not come back as it was.
std::string scramble(const Setting& setting, const std::string& plain) {
  if (plain.empty()) return {};
  std::string stored = CryptLong(plain);
  if (DecryptLong(stored) != plain) {
    throw UsageError(setting.path() + ": Ein Passwort kann nur Zeichen von Windows-1252 enthalten");
  }
  return stored;
}

Json toJson(const Setting& setting, const ValueInForce& inForce) {
  Json operations = Json::array();
  std::istringstream names(operationNames(setting.neededBy));
  for (std::string name; std::getline(names >> std::ws, name, ',');) operations.push_back(name);
  const bool masked = setting.secret() && !inForce.value.empty();
  return {{"name", setting.path()},
          {"value", masked ? "*****" : inForce.value},
          {"source", sourceName(inForce.source)},
          {"type", typeName(setting.type)},
          {"secret", setting.secret()},
          {"default", setting.fallback},
          {"allowed", setting.allowed},
          {"storeOnly", setting.storeOnly},
          {"neededBy", operations},
          {"meaning", setting.meaning}};
}

/// Also without a store: what counts then are the defaults.
void list(const Options& options) {
  const auto store = openStore(options);
  const auto files = adapters::machine::makeProfileFiles();
  Json all = Json::array();
  for (const Setting& setting : settingsTable()) {
    const ValueInForce inForce = valueInForce(*store, *files, setting);
    if (options.json) {
      all.push_back(toJson(setting, inForce));
      continue;
    }
    const bool masked = setting.secret() && !inForce.value.empty();
    std::cout << setting.path() << " = " << (masked ? "*****" : printable(inForce.value));
    const bool remarked = inForce.source != ValueInForce::Source::store && !inForce.value.empty();
    if (remarked) std::cout << "  (" << sourceInGerman(inForce.source) << ")";
    std::cout << '\n';
  }
  if (options.json) std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  requireStore(registryFile(options.registry));
}

void get(const Options& options) {
  const Setting& setting = findSetting(options.name);
  requireStore(registryFile(options.registry));
  const auto [value, source] = valueInForce(*openStore(options), *adapters::machine::makeProfileFiles(), setting);
  if (value.empty()) throw CommandFailure(setting.path() + " ist nicht gesetzt");
  // The scrambled form holds control characters: they are for files and pipes only.
  std::cout << (adapters::system::isTerminal(adapters::system::Stream::output) ? printable(value) : value) << '\n';
  // Beside the value, which scripts read.
  if (source != ValueInForce::Source::store) std::cerr << setting.path() << ": " << sourceInGerman(source) << '\n';
}

void set(const Options& options) {
  const Setting& setting = findSetting(options.name);
  if (options.scrambled && !setting.secret()) {
    throw UsageError(setting.path() + " ist nicht geheim: ohne --scrambled setzen");
  }
  if (setting.secret() && options.value) {
    throw UsageError(setting.path() +
                     " wird nicht aus der Befehlszeile genommen, die andere lesen können: ohne den Wert aufrufen "
                     "und ihn eingeben, oder ihn über die Standardeingabe geben");
  }
  std::string value = options.value ? *options.value : readLine(setting.path(), setting.secret());
  checkType(setting, value);
  if (setting.secret() && !options.scrambled) value = scramble(setting, value);
  storeValue(*openStore(options), setting, value);
}

void unset(const Options& options) {
  requireStore(registryFile(options.registry));
  removeValue(*openStore(options), findSetting(options.name));
}

/// Copies every setting that `from` holds, or none when one of them cannot be read or stored; gives their number.
std::size_t copySettings(platform::Registry& from, platform::Registry& to) {
  Values found;
  for (const Setting& setting : settingsTable()) {
    const auto value = storedValue(from, setting);
    if (!value) continue;
    found.emplace_back(&setting, *value);
  }
  if (found.empty()) return 0;
  // What could not be read would be missing in silence.
  if (const std::string failure = from.readFailure(); !failure.empty()) {
    throw CommandFailure("Die Einstellungen konnten nicht alle gelesen werden: " + failure);
  }
  storeValues(to, found);
  return found.size();
}

void importSettings(const Options& options) {
  const std::size_t count = copySettings(*adapters::makeRegFile(pathOf(options.file)), *openStore(options));
  if (count == 0)
    throw CommandFailure(options.file + " enthält keine Einstellungen von Kartix oder ist nicht lesbar");
  std::cout << count << " Einstellungen übernommen in " << storeName(registryFile(options.registry)) << '\n';
}

void exportSettings(const Options& options) {
  if (std::filesystem::exists(pathOf(options.file))) throw CommandFailure(options.file + " gibt es schon");
  const std::size_t count = copySettings(*openStore(options), *adapters::makeRegFile(pathOf(options.file)));
  if (count == 0) throw CommandFailure("Es gibt keine Einstellungen in " + storeName(registryFile(options.registry)));
  std::cout << count << " Einstellungen geschrieben nach " << options.file << '\n';
}

}  // namespace

void addSettingsCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const settings =
      app.add_subcommand("settings", "Einstellungsspeicher; Passwörter liegen verschleiert darin");
  requireSubcommand(*settings);
  settings->footer(
      "Beispiele:\n"
      "  kartix settings set FS.DBName /var/lib/kartix/host.db\n"
      "  kartix settings set FS.DBPass            (fragt nach dem Passwort oder liest es von der Standardeingabe)\n"
      "  kartix settings import argo.reg");

  const auto add = [&](const char* name, const char* description, void (*action)(const Options&)) {
    CLI::App* const command = settings->add_subcommand(name, description);
    addRegistryOption(*command, options->registry);
    command->callback([options, action, &exit] {
      action(*options);
      exit = exit_status::done;
    });
    return command;
  };
  const char* const nameHelp = "Abschnitt und Name, zum Beispiel FS.ServerIP";
  CLI::App* const lister =
      add("list",
          "Zeigt, was von jeder Einstellung gilt, mit einem Vermerk, wenn es nicht aus dem Speicher kommt; "
          "Passwörter erscheinen als *****",
          list);
  lister->add_flag("--json", options->json, "Als JSON, mit allem, was zu jeder Einstellung bekannt ist");
  add("get", "Gibt aus, was von einer Einstellung gilt, ein Passwort in verschleierter Form", get)
      ->add_option("NAME", options->name, nameHelp)
      ->required();
  CLI::App* const setter =
      add("set", "Setzt eine Einstellung; ein Passwort wird im Klartext eingegeben und verschleiert abgelegt", set);
  setter->add_option("NAME", options->name, nameHelp)->required();
  setter->add_option("VALUE", options->value,
                     "Neuer Wert; ohne ihn eine Zeile der Standardeingabe, wie immer bei Passwörtern");
  setter->add_flag("--scrambled", options->scrambled, "Das Passwort ist schon in verschleierter Form");
  add("unset", "Nimmt eine Einstellung aus dem Speicher, so dass Ini-Datei oder Vorgabe gilt", unset)
      ->add_option("NAME", options->name, nameHelp)
      ->required();
  add("import", "Übernimmt Einstellungen aus einem Export der Registrierung", importSettings)
      ->add_option("FILE", options->file, "Export der Registrierung (.reg)")
      ->required()
      ->check(CLI::ExistingFile);
  add("export", "Schreibt die Einstellungen in einen neuen Export der Registrierung", exportSettings)
      ->add_option("FILE", options->file, "Neue Datei (.reg)")
      ->required();
}

}  // namespace kartix::host
