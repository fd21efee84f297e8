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
    throw UsageError(setting.path() + ": a password can only hold characters of Windows-1252");
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
    if (remarked) std::cout << "  (" << sourceName(inForce.source) << ")";
    std::cout << '\n';
  }
  if (options.json) std::cout << all.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
  requireStore(registryFile(options.registry));
}

void get(const Options& options) {
  const Setting& setting = findSetting(options.name);
  requireStore(registryFile(options.registry));
  const auto [value, source] = valueInForce(*openStore(options), *adapters::machine::makeProfileFiles(), setting);
  if (value.empty()) throw CommandFailure(setting.path() + " is not set");
  // The scrambled form holds control characters: they are for files and pipes only.
  std::cout << (adapters::system::isTerminal(adapters::system::Stream::output) ? printable(value) : value) << '\n';
  // Beside the value, which scripts read.
  if (source != ValueInForce::Source::store) std::cerr << setting.path() << ": " << sourceName(source) << '\n';
}

void set(const Options& options) {
  const Setting& setting = findSetting(options.name);
  if (options.scrambled && !setting.secret()) {
    throw UsageError(setting.path() + " is not secret: leave out --scrambled");
  }
  if (setting.secret() && options.value) {
    throw UsageError(setting.path() +
                     " is not taken from the command line, which others can read: leave it out, and enter it or pass "
                     "it to standard input");
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

/// Copies every setting that `from` holds, or none when one of them cannot be stored; gives their number.
std::size_t copySettings(platform::Registry& from, platform::Registry& to) {
  std::vector<std::pair<const Setting*, std::string>> found;
  for (const Setting& setting : settingsTable()) {
    const auto value = storedValue(from, setting);
    if (!value) continue;
    checkValue(setting, *value);
    found.emplace_back(&setting, *value);
  }
  for (const auto& [setting, value] : found) storeValue(to, *setting, value);
  return found.size();
}

void importSettings(const Options& options) {
  const std::size_t count = copySettings(*adapters::makeRegFile(options.file), *openStore(options));
  if (count == 0) throw CommandFailure(options.file + " holds no settings of this component, or cannot be read");
  std::cout << count << " settings imported into " << storeName(registryFile(options.registry)) << '\n';
}

void exportSettings(const Options& options) {
  if (std::filesystem::exists(options.file)) throw CommandFailure(options.file + " exists already");
  const std::size_t count = copySettings(*openStore(options), *adapters::makeRegFile(options.file));
  if (count == 0) throw CommandFailure("there are no settings in " + storeName(registryFile(options.registry)));
  std::cout << count << " settings exported to " << options.file << '\n';
}

}  // namespace

void addSettingsCommand(CLI::App& app, int& exit) {
  const auto options = std::make_shared<Options>();
  CLI::App* const settings = app.add_subcommand("settings", "The settings store; passwords are kept scrambled");
  requireSubcommand(*settings);
  settings->footer(
      "Examples:\n"
      "  kartix settings set FS.DBName /var/lib/kartix/host.db\n"
      "  kartix settings set FS.DBPass            (asks for the password, or reads it from standard input)\n"
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
  const char* const nameHelp = "Section and name, for example FS.ServerIP";
  CLI::App* const lister =
      add("list",
          "Show what counts of every setting, with a remark when it comes from elsewhere than the "
          "store; passwords appear as *****",
          list);
  lister->add_flag("--json", options->json, "As JSON, with everything that is known of each setting");
  add("get", "Print what counts of one setting, a password in its scrambled form", get)
      ->add_option("NAME", options->name, nameHelp)
      ->required();
  CLI::App* const setter = add("set", "Store one setting; a password is entered plain and stored scrambled", set);
  setter->add_option("NAME", options->name, nameHelp)->required();
  setter->add_option("VALUE", options->value,
                     "New value; without it one line of standard input, as always for passwords");
  setter->add_flag("--scrambled", options->scrambled, "The password is in its scrambled form already");
  add("unset", "Take one setting out of the store, so that the ini file or the default counts", unset)
      ->add_option("NAME", options->name, nameHelp)
      ->required();
  add("import", "Take over settings from a registry export", importSettings)
      ->add_option("FILE", options->file, "Registry export (.reg)")
      ->required()
      ->check(CLI::ExistingFile);
  add("export", "Write the settings to a new registry export", exportSettings)
      ->add_option("FILE", options->file, "File to write (.reg)")
      ->required();
}

}  // namespace kartix::host
