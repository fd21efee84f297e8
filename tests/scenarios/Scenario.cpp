#include "scenarios/Scenario.h"

#include <algorithm>
#include <map>

#include "common/Text.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

namespace fs = std::filesystem;

/// Keys of a scenario and of the objects in it.
const std::map<std::string, std::vector<std::string>> knownKeys = {
    {"scenario", {"about",    "system", "operation", "person",   "lfdnr",  "clerk",     "before", "now",
                  "settings", "ini",    "files",     "pictures", "held",   "rows",      "sql",    "gateway",
                  "replies",  "setup",  "script",    "objects",  "expect"}},
    {"expect",
     {"init", "result", "properties", "messages", "windows", "ready", "requests", "tunnels", "calls", "progress",
      "sounds", "settings", "ini", "trace", "traceHas", "book", "pictures"}},
    {"gateway", {"tls", "proxy"}},
    {"setup", {"httpVersion", "xmlClasses"}},
};

void checkKeys(const Json& object, const std::string& kind) {
  const std::vector<std::string>& known = knownKeys.at(kind);
  for (const auto& [key, value] : object.items()) {
    if (std::find(known.begin(), known.end(), key) == known.end())
      throw BadScenario("unknown key in " + kind + ": " += key);
    if (knownKeys.contains(key)) checkKeys(value, key);
  }
}

/// False for what another kind of system alone can show.
bool isForThisSystem(const Json& scenario) {
  const std::string here = fs::path::preferred_separator == '/' ? "posix" : "windows";
  return scenario.value("system", here) == here;
}

/// `content` laid over what it extends.
Json extended(Json content) {
  if (!content.contains("extends")) return content;
  Json base = loadBase(content["extends"]);
  content.erase("extends");
  base.merge_patch(content);
  return base;
}

/// What is left of a file name or a case's name in the name of a test.
std::string testName(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return text;
}

void loadFile(const fs::path& file, std::vector<Scenario>& scenarios) {
  const std::string name = testName(file.parent_path().filename().string() + "_" + file.stem().string());
  try {
    Json content = Json::parse(readBytes(file));
    Json cases = part(content, "cases");
    content.erase("cases");
    content = extended(std::move(content));
    if (cases.empty()) cases[""] = Json::object();
    for (const auto& [caseName, difference] : cases.items()) {
      Scenario scenario{caseName.empty() ? name : name + "__" + testName(caseName), content, ""};
      scenario.content.merge_patch(difference);
      checkKeys(scenario.content, "scenario");
      if (!isForThisSystem(scenario.content)) continue;
      if (part(scenario.content, "about").empty()) throw BadScenario("\"about\" does not say what must hold");
      if (part(scenario.content, "expect").empty()) throw BadScenario("nothing is expected");
      scenarios.push_back(std::move(scenario));
    }
  } catch (const std::exception& error) {
    scenarios.push_back({name, {}, error.what()});
  }
}

}  // namespace

std::vector<Scenario> loadScenarios() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(KARTIX_SCENARIOS)) {
    const fs::path& file = entry.path();
    if (file.extension() == ".json" && file.parent_path().filename() != "base") files.push_back(file);
  }
  std::sort(files.begin(), files.end());
  std::vector<Scenario> scenarios;
  for (const fs::path& file : files) loadFile(file, scenarios);
  return scenarios;
}

Json loadBase(const std::string& name) { return extended(Json::parse(readBytes(scenarioFile("base", name)))); }

fs::path scenarioFile(const std::string& folder, const std::string& name) {
  fs::path file = fs::path(KARTIX_SCENARIOS) / folder / name;
  if (!fs::exists(file)) throw BadScenario("there is no " + file.string());
  return file;
}

const Json& part(const Json& object, const std::string& key) {
  static const Json none = Json::object();
  const auto found = object.find(key);
  return found == object.end() ? none : *found;
}

std::string substitute(std::string text, const Json& names) {
  for (const auto& [name, value] : names.items()) {
    text = text::replaceAll(text, std::string("$").append(name), value.get_ref<const std::string&>());
  }
  return text;
}

Json substituteAll(Json value, const Json& names) {
  if (value.is_string()) return substitute(value.get<std::string>(), names);
  if (value.is_structured()) {
    for (Json& item : value) item = substituteAll(std::move(item), names);
  }
  return value;
}

}  // namespace kartix::test
