#include <map>
#include <utility>

#include "adapters/script/InputFile.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "common/Paths.h"
#include "common/Values.h"

namespace kartix::adapters {
namespace {

using platform::AutomationError;
using platform::AutomationObject;
using platform::ObjectClasses;
using platform::Value;

class TranscriptSounds final : public platform::SoundPlayer {
 public:
  TranscriptSounds(Transcript& transcript, platform::SoundPlayer* player)
      : transcript_(transcript), player_(player) {}

  void playSound(std::string_view alias) override {
    transcript_.sound(alias);
    if (player_) player_->playSound(alias);
  }

 private:
  Transcript& transcript_;
  platform::SoundPlayer* player_;
};

class RecordingObject final : public AutomationObject {
 public:
  RecordingObject(std::unique_ptr<AutomationObject> object, std::string_view progId, Transcript& transcript)
      : object_(std::move(object)), progId_(progId), transcript_(transcript) {}

  Value call(std::string_view member, const std::vector<Value>& arguments) override {
    try {
      Value returned = object_->call(member, arguments);
      transcript_.objectReturned(progId_, member, arguments, returned);
      return returned;
    } catch (const AutomationError& error) {
      transcript_.objectFailed(progId_, member, arguments, error.what());
      throw;
    }
  }

 private:
  std::unique_ptr<AutomationObject> object_;
  std::string progId_;
  Transcript& transcript_;
};

class RecordingObjects final : public ObjectClasses {
 public:
  RecordingObjects(ObjectClasses& classes, Transcript& transcript) : classes_(classes), transcript_(transcript) {}

  std::unique_ptr<AutomationObject> createObject(std::string_view progId) override {
    return std::make_unique<RecordingObject>(classes_.createObject(progId), progId, transcript_);
  }

 private:
  ObjectClasses& classes_;
  Transcript& transcript_;
};

/// Answers of one member: a value for every call, or chosen by the first argument, or one after the other.
class Answers {
 public:
  /// `place` names class and member in an error.
  static Answers read(const Json& json, const std::string& place) {
    Answers answers;
    if (!json.is_array()) {
      answers.successive_.push_back(readAnswer(json, place));
      return answers;
    }
    if (json.empty()) throw BadInput(place + ": an empty list of answers");
    for (const Json& answer : json) answers.successive_.push_back(readAnswer(answer, place));
    return answers;
  }

  Value next(const std::vector<Value>& arguments) {
    const Answer& answer = successive_[position_];
    if (position_ + 1 < successive_.size()) ++position_;
    if (!answer.chosen) return answer.value;
    const std::string key = arguments.empty() ? std::string() : toText(arguments.front());
    const auto found = answer.byArgument.find(key);
    if (found == answer.byArgument.end()) throw AutomationError("Ungültiges Argument: \"" + key + "\"");
    return found->second;
  }

 private:
  struct Answer {
    bool chosen = false;
    Value value;
    std::map<std::string, Value> byArgument;
  };

  static Answer readAnswer(const Json& json, const std::string& place) {
    Answer answer;
    if (!json.is_object()) {
      answer.value = readValue(json, place);
      return answer;
    }
    answer.chosen = true;
    for (const auto& [argument, value] : json.items()) answer.byArgument[argument] = readValue(value, place);
    return answer;
  }

  static Value readValue(const Json& json, const std::string& place) {
    if (json.is_null()) return {};
    if (json.is_boolean()) return json.get<bool>();
    if (json.is_number_integer()) return json.get<std::int64_t>();
    if (json.is_number()) return json.get<double>();
    if (json.is_string()) return json.get<std::string>();
    throw BadInput(place + ": an answer is a value, a list of answers, or an object of values");
  }

  std::vector<Answer> successive_;
  std::size_t position_ = 0;
};

/// Answers by member.
using Members = std::map<std::string, Answers, std::less<>>;

class ScriptedObject final : public AutomationObject {
 public:
  explicit ScriptedObject(Members& members) : members_(members) {}

  Value call(std::string_view member, const std::vector<Value>& arguments) override {
    const auto found = members_.find(member);
    if (found != members_.end()) return found->second.next(arguments);
    if (member.starts_with("Set")) return {};
    throw AutomationError("Objekt unterstützt diese Eigenschaft oder Methode nicht: " + std::string(member));
  }

 private:
  Members& members_;
};

class ScriptedObjects final : public ObjectClasses {
 public:
  explicit ScriptedObjects(std::map<std::string, Members, std::less<>> classes) : classes_(std::move(classes)) {}

  std::unique_ptr<AutomationObject> createObject(std::string_view progId) override {
    const auto found = classes_.find(progId);
    if (found == classes_.end()) {
      throw AutomationError("Objekterstellung durch ActiveX-Komponente nicht möglich: " + std::string(progId));
    }
    return std::make_unique<ScriptedObject>(found->second);
  }

 private:
  std::map<std::string, Members, std::less<>> classes_;
};

}  // namespace

std::unique_ptr<platform::SoundPlayer> makeTranscriptSounds(Transcript& transcript, platform::SoundPlayer* player) {
  return std::make_unique<TranscriptSounds>(transcript, player);
}

std::unique_ptr<ObjectClasses> makeRecordingObjects(ObjectClasses& classes, Transcript& transcript) {
  return std::make_unique<RecordingObjects>(classes, transcript);
}

std::unique_ptr<ObjectClasses> makeScriptedObjects(std::string_view json) {
  const Json file = parseJson(json);
  if (!file.is_object()) throw BadInput("an objects file is an object of classes");
  std::map<std::string, Members, std::less<>> classes;
  for (const auto& [progId, members] : file.items()) {
    if (members.is_null()) continue;
    if (!members.is_object()) throw BadInput(progId + ": a class is an object of members, or null");
    Members& known = classes[progId];
    for (const auto& [member, answer] : members.items()) {
      const std::string place = std::string(progId).append(".").append(member);
      known.insert_or_assign(member, Answers::read(answer, place));
    }
  }
  return std::make_unique<ScriptedObjects>(std::move(classes));
}

std::unique_ptr<ObjectClasses> loadScriptedObjects(const std::filesystem::path& file) {
  const std::string content = readInputFile(file);
  try {
    return makeScriptedObjects(content);
  } catch (const BadInput& error) {
    throw BadInput(utf8Of(file) + ": " + error.what());
  }
}

}  // namespace kartix::adapters
