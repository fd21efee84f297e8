#include "scenarios/Play.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "adapters/libxml2/LibXml.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "adapters/settings/Settings.h"
#include "common/CodePage.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "common/Values.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "runtime/Konfiguration.h"
#include "scenarios/HostData.h"
#include "scenarios/Pictures.h"
#include "support/Files.h"
#include "support/HeldFile.h"
#include "support/TestMachine.h"

namespace kartix::test {
namespace {

namespace fs = std::filesystem;

/// Where a setting of a scenario stands in the store.
struct SettingPlace {
  explicit SettingPlace(const std::string& path) : name(path.substr(path.rfind('.') + 1)) {
    section = path.substr(0, path.size() - name.size());
    if (!section.empty()) section.pop_back();
    key = name == "KODSImageDir" ? R"(Software\Tessel\ARGO Anwendungen\Version 9\KXFS\FOTOFS)"
                                 : std::string(productKey) + section;
    if (key.ends_with('\\')) key.pop_back();
    for (const char* one : {"SysPass", "DBPass", "ZEVISPass", "GATEWAYCertPass"}) secret = secret || name == one;
  }

  std::string stored(const Json& value) const {
    return secret ? CryptLong(value.get<std::string>()) : value.get<std::string>();
  }
  std::string plain(const std::string& text) const { return secret ? DecryptLong(text) : text; }

  std::string section;
  std::string name;
  std::string key;
  bool secret = false;
};

std::string bodyOf(const Json& reply) {
  if (reply.is_string()) return readBytes(scenarioFile("replies", reply));
  if (reply.contains("size")) {
    std::string filler;
    filler.resize(reply["size"], 'x');
    return filler;
  }
  if (reply.contains("file")) return readBytes(scenarioFile("replies", reply["file"]));
  const std::string text = reply.value("text", "");
  return reply.value("ansi", false) ? codepage::toAnsi(text) : text;
}

/// A reply is the name of a file, or an object that says more.
Reply makeReply(const Json& reply) {
  std::string headers = "Keep-Alive: timeout=60\r\n";  // saves the wait that shows it
  if (reply.is_string()) return {answer(bodyOf(reply), "200 OK", headers)};
  for (const auto& [cookie, value] : part(reply, "cookies").items()) {
    headers += "Set-Cookie: " + cookie + "=" + value.get<std::string>() + "; Path=/\r\n";
  }
  Reply made{answer(bodyOf(reply), reply.value("status", "200 OK"), headers)};
  const std::string fault = reply.value("fault", "");
  if (fault.empty()) return made;
  if (fault == "half") return {made.bytes.substr(0, made.bytes.size() / 2), Reply::Then::close};
  if (fault == "close") return {"", Reply::Then::close};
  if (fault == "reset") return {"", Reply::Then::reset};
  throw BadScenario("unknown fault \"" + fault + "\"");
}

/// A client library of another version, or none at all, that never makes a request.
struct OtherHttp : IdleParts {
  explicit OtherHttp(std::int32_t number) : version(number) {}
  std::int32_t TESSELHTTPgetDLLVersion() override { return version; }
  std::int32_t version;
};

/// "WINDOW: ACTION ARGUMENT" as the step of a script; what is an object already stays one.
Json stepOf(const Json& step) {
  if (!step.is_string()) return step;
  std::istringstream words(step.get<std::string>());
  std::string window;
  std::string action;
  std::string argument;
  std::getline(words, window, ':');
  words >> action >> argument;
  std::string text;
  std::getline(words >> std::ws, text);
  Json made = {{"window", window}};
  if (action == "close") {
    made[action] = true;
  } else if (action == "pick") {
    made[action] = std::stoul(argument);
  } else if (action == "type" || action == "select") {
    made[action] = {{argument, text}};
  } else {
    made[action] = argument;
  }
  return made;
}

platform::LocalTime parseTime(const std::string& text) {
  platform::LocalTime time;
  if (std::sscanf(text.c_str(), "%d-%d-%dT%d:%d:%d", &time.year, &time.month, &time.day, &time.hour, &time.minute,
                  &time.second) != 6) {
    throw BadScenario("\"now\" is no moment: " + text);
  }
  return time;
}

void callKartix(dispatch::Object& kartix, const Json& scenario, Outcome& outcome) {
  const auto text = [](const Json& value) { return value.get<std::string>(); };
  outcome.init = beginSession(kartix, text(scenario.at("clerk")), text(scenario.at("person")));
  for (const Json& earlier : part(scenario, "before")) carryOut(kartix, text(earlier.at(0)), text(earlier.at(1)));
  outcome.result = carryOut(kartix, text(scenario.at("operation")), text(scenario.at("lfdnr")));
  outcome.properties = dispatch::properties(kartix);
}

}  // namespace

bool beginSession(dispatch::Object& kartix, const std::string& clerk, const std::string& person) {
  std::array<dispatch::Value, 2> arguments = {clerk, person};
  return std::get<bool>(kartix.call("init", arguments));
}

std::int32_t carryOut(dispatch::Object& kartix, const std::string& operation, const std::string& lfdnr) {
  dispatch::Value argument = lfdnr;
  return operation == "none" ? -1 : toNumber(kartix.call(operation, std::span(&argument, 1)));
}

void traceCalls(Json& scenario) {
  scenario["settings"]["ZFER.DebugLevel"] = "1";
  scenario["settings"]["ZFER.DebugFile"] = "$DIR/trace.txt";
}

LoopbackServer::Script repliesOf(const Json& scenario) {
  std::vector<Reply> made;
  for (const Json& reply : part(scenario, "replies")) made.push_back(makeReply(reply));
  return [made = std::move(made), next = std::size_t{0}](const RecordedRequest&) mutable {
    return next < made.size() ? made[next++] : Reply{"", Reply::Then::close};
  };
}

Installation::Installation(const Json& scenario, LoopbackServer::Script gateway)
    : names_({{"DIR", directory_.path().string()}, {"UNUSED", Listener().port()}}) {
  startGateway(part(scenario, "gateway"), gateway ? std::move(gateway) : repliesOf(scenario));
  scenario_ = substituteAll(scenario, names_);
  auto hostData = hostOnServer();
  if (!hostData) hostData = hostFile(directory_.path());
  hostData->make(hostStatements());
  scenario_["settings"] = hostData->settings();
  scenario_["settings"].update(substituteAll(part(scenario, "settings"), names_));
  for (const char* const name : {"FS.ServerIP", "FS.ServerPort", "FS.SysUser", "FS.DBName", "FS.DBUser"}) {
    names_[name] = scenario_["settings"].value(name, "");
  }
  writeSettings();
  for (const auto& [name, picture] : part(scenario_, "pictures").items()) makePicture(directory_ / name, picture);
  for (const auto& [name, content] : part(scenario_, "files").items()) writeBytes(directory_ / name, content);
  if (scenario_.contains("held")) held_ = hold(directory_ / scenario_["held"].get<std::string>());
}

void Installation::startGateway(const Json& gateway, LoopbackServer::Script script) {
  std::optional<TlsWishes> tls;
  if (gateway.contains("tls")) {
    authority_.emplace(directory_.path());
    authority_->issue("client");
    authority_->issue("other");
    authority_->issue("locked", {.phrase = "geheim"});
    std::map<std::string, PemFiles> servers = {
        {"good", authority_->issue("server")},
        {"wrong name", authority_->issue("name", {.names = "DNS:gateway.example"})},
        {"expired", authority_->issue("expired", {.validDays = -1})}};
    tls = TlsWishes{servers.at(gateway["tls"]), authority_->caFile()};
  }
  gateway_ = std::make_unique<LoopbackServer>(std::move(script), tls);
  names_["PORT"] = gateway_->port();
  if (gateway.contains("proxy")) proxy_ = std::make_unique<ConnectProxy>(gateway["proxy"].get<std::string>());
  if (proxy_) names_["PROXY"] = proxy_->address();
}

void Installation::writeSettings() const {
  Json settings = part(scenario_, "settings");
  if (scenario_.contains("ini")) {
    settings.emplace("InfoDatei", names_["DIR"].get<std::string>() + "/kartix.ini");
    std::ofstream ini(directory_ / "kartix.ini", std::ios::binary);
    std::string section;
    for (const auto& [path, value] : scenario_["ini"].items()) {
      const SettingPlace place(path);
      if (place.section != section) ini << '[' << (section = place.section) << "]\r\n";
      ini << place.name << '=' << codepage::toAnsi(place.stored(value)) << "\r\n";
    }
  }
  std::ofstream store(directory_ / "registry.reg", std::ios::binary);
  store << "Windows Registry Editor Version 5.00\r\n";
  for (const auto& [path, value] : settings.items()) {
    const SettingPlace place(path);
    const std::string escaped = text::replaceAll(text::replaceAll(place.stored(value), "\\", "\\\\"), "\"", "\\\"");
    store << "\r\n[HKEY_CURRENT_USER\\" << place.key << "]\r\n\"" << place.name << "\"=\"" << escaped << "\"\r\n";
  }
}

std::vector<std::string> Installation::hostStatements() const {
  std::vector<std::string> statements;
  for (const auto& [table, rows] : part(scenario_, "rows").items()) {
    for (const Json& row : rows) {
      std::ostringstream columns;
      std::ostringstream values;
      for (const auto& [column, value] : row.items()) {
        columns << ',' << column;
        values << ",'" << text::replaceAll(value.get<std::string>(), "'", "''") << "'";
      }
      statements.push_back("insert into " + table + " (" + columns.str().substr(1) + ") values (" +
                           values.str().substr(1) + ")");
    }
  }
  for (const Json& statement : part(scenario_, "sql")) statements.push_back(statement);
  return statements;
}

adapters::Script Installation::script() const {
  Json steps = Json::array();
  for (const Json& step : part(scenario_, "script")) steps.push_back(stepOf(step));
  return adapters::Script::parse(steps.dump());
}

Setup Installation::setup() const {
  Setup setup;
  setup.registryFile = directory_ / "registry.reg";
  setup.now = parseTime(scenario_.at("now"));
  if (authority_) setup.caFile = authority_->caFile();
  return setup;
}

Outcome Installation::play() {
  adapters::Script clerkScript = script();
  std::ostringstream seen;
  adapters::Transcript transcript(seen);
  const auto clerk = adapters::makeScriptUserInterface(clerkScript, &transcript);
  const auto sounds = adapters::makeTranscriptSounds(transcript);
  const Json objects = part(scenario_, "objects");
  const bool scriptedObjects = objects != "gateway";
  const auto classes = adapters::makeScriptedObjects(scriptedObjects ? objects.dump() : "{}");
  const Json faults = part(scenario_, "setup");
  OtherHttp http(faults.value("httpVersion", 0));
  const auto xml = adapters::makeLibXml(faults.value("xmlClasses", std::vector<std::string>()));

  Setup parts = setup();
  parts.userInterface = clerk.get();
  parts.sounds = sounds.get();
  if (scriptedObjects) parts.objects = classes.get();
  parts.wrapObjects = [&](auto& real) { return adapters::makeRecordingObjects(real, transcript); };
  if (faults.contains("httpVersion")) parts.http = &http;
  if (faults.contains("xmlClasses")) parts.xml = xml.get();

  Outcome outcome;
  {
    Component component(parts);
    component.useGatewayObjects();
    dispatch::Object kartix(dispatch::classNamed("Kartix"), component);
    callKartix(kartix, scenario_, outcome);
  }
  outcome.scriptMismatch = clerkScript.mismatch();
  std::istringstream lines(seen.str());
  for (std::string line; std::getline(lines, line);) outcome.transcript.push_back(Json::parse(line));
  outcome.requests = gateway_->requests();
  if (proxy_) outcome.tunnels = proxy_->requests();
  return outcome;
}

std::string Installation::trace() const { return readBytes(directory_ / "trace.txt"); }

std::string Installation::storedSetting(const std::string& path) const {
  const SettingPlace place(path);
  const auto value = adapters::makeRegFile(directory_ / "registry.reg")->RegQueryValueEx(place.key, place.name);
  return value ? place.plain(value->text) : "";
}

std::string Installation::storedIni(const std::string& path) const {
  const SettingPlace place(path);
  const std::string file = (directory_ / "kartix.ini").string();
  return place.plain(adapters::makeIniFiles()->GetPrivateProfileString(place.section, place.name, "", 1024, file));
}

}  // namespace kartix::test
