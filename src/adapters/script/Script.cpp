#include "adapters/script/Script.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "adapters/script/InputFile.h"
#include "common/Paths.h"
#include "common/Text.h"

namespace kartix::adapters {
namespace {

using Action = Step::Action;

constexpr std::array<std::pair<std::string_view, Action>, 6> actions = {{{"choose", Action::choose},
                                                                         {"click", Action::click},
                                                                         {"type", Action::type},
                                                                         {"select", Action::select},
                                                                         {"pick", Action::pick},
                                                                         {"close", Action::close}}};

[[noreturn]] void bad(std::size_t index, const std::string& reason) {
  throw BadInput("step " + std::to_string(index + 1) + ": " + reason);
}

void readArgument(Step& step, const Json& value, std::size_t index) {
  const std::string name = inQuotes(actionName(step.action));
  switch (step.action) {
    case Action::choose:
    case Action::click:
      if (!value.is_string() || value.get_ref<const std::string&>().empty()) {
        bad(index, name + " needs the name of a control");
      }
      step.control = value.get<std::string>();
      return;
    case Action::type:
    case Action::select:
      if (!value.is_object() || value.empty()) bad(index, name + " needs an object of control names and texts");
      for (const auto& [control, text] : value.items()) {
        if (!text.is_string()) bad(index, name + ": the text for " + inQuotes(control) + " is not a string");
        step.entries.emplace_back(control, text.get<std::string>());
      }
      return;
    case Action::pick:
      if (!value.is_number_unsigned()) bad(index, name + " needs the number of a row, from 0");
      step.row = value.get<std::size_t>();
      return;
    case Action::close:
      if (value != true) bad(index, name + " needs the value true");
      return;
  }
}

const std::pair<std::string_view, Action>* findAction(std::string_view name) {
  return std::find_if(actions.begin(), actions.end(), [&](const auto& action) { return action.first == name; });
}

Step readStep(const Json& json, std::size_t index) {
  if (!json.is_object()) bad(index, "is not an object");
  Step step;
  bool hasAction = false;
  for (const auto& [key, value] : json.items()) {
    if (key == "window") {
      if (!value.is_string()) bad(index, "\"window\" needs the name of a window");
      step.window = value.get<std::string>();
      continue;
    }
    const auto* const found = findAction(key);
    if (found == actions.end()) bad(index, "unknown action " + inQuotes(key));
    if (hasAction) bad(index, "more than one action");
    hasAction = true;
    step.action = found->second;
    readArgument(step, value, index);
  }
  if (step.window.empty()) bad(index, "\"window\" is missing");
  if (!hasAction) bad(index, "the action is missing");
  return step;
}

}  // namespace

std::string_view actionName(Step::Action action) {
  const auto* const found =
      std::find_if(actions.begin(), actions.end(), [&](const auto& entry) { return entry.second == action; });
  return found->first;
}

std::string inQuotes(std::string_view text) {
  std::string quoted = "\"";
  for (std::size_t position = 0; position < text.size();) {
    const char32_t c = text::nextCharacter(text, position);
    text::append(quoted, c < 0x20 || (c >= 0x7F && c < 0xA0) ? U' ' : c);
  }
  return quoted + '"';
}

std::string describe(const Step& step) {
  std::string text(actionName(step.action));
  switch (step.action) {
    case Action::choose:
    case Action::click:
      text += " " + inQuotes(step.control);
      break;
    case Action::type:
    case Action::select:
      for (const auto& entry : step.entries) text += " " + inQuotes(entry.first);
      break;
    case Action::pick:
      text += " row " + std::to_string(step.row);
      break;
    case Action::close:
      break;
  }
  return text + " in window " + inQuotes(step.window);
}

Script Script::parse(std::string_view json) {
  struct Steps {
    explicit Steps(Json parsed) : json(std::move(parsed)) {}
    ~Steps() { dissolve(json); }
    Steps(const Steps&) = delete;
    Steps& operator=(const Steps&) = delete;
    Json json;
  } parsed(parseJson(json));
  const Json& steps = parsed.json;
  if (!steps.is_array()) throw BadInput("a script is an array of steps");
  Script script;
  script.steps_.reserve(steps.size());
  for (const Json& step : steps) script.steps_.push_back(readStep(step, script.steps_.size()));
  return script;
}

Script Script::load(const std::filesystem::path& file) {
  const std::string content = readInputFile(file);
  try {
    return parse(content);
  } catch (const BadInput& error) {
    throw BadInput(utf8Of(file) + ": " + error.what());
  }
}

const Step* Script::next() const {
  if (failure_ || position_ >= steps_.size()) return nullptr;
  return &steps_[position_];
}

bool Script::failAt(Place place, std::string_view expected, std::string_view found) {
  if (failure_) return false;
  const std::string where = place < steps_.size() ? "step " + std::to_string(place + 1) : "after the last step";
  failure_ = where + ": expected " + std::string(expected) + "; found " + std::string(found);
  return true;
}

std::optional<std::string> Script::mismatch() const {
  if (failure_) return failure_;
  if (position_ >= steps_.size()) return std::nullopt;
  return "step " + std::to_string(position_ + 1) + ": expected to " + describe(steps_[position_]) +
         "; found the operation ended with " + std::to_string(steps_.size() - position_) + " step(s) left";
}

}  // namespace kartix::adapters
