#include "adapters/script/TestClerk.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <optional>
#include <utility>

#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "common/LocalTimeText.h"
#include "common/Paths.h"

namespace kartix::adapters {

/// One play with all that belongs to it.
class TestClerk::Performance {
 public:
  Performance(Machine& machine, const Play& play) : name_(utf8Of(play.script)) {
    try {
      prepare(machine, play);
    } catch (const BadInput& error) {
      problem_ = error.what();
      script_ = Script::parse("[]");
    }
    if (script_) {
      front_ = makeScriptUserInterface(*script_, &transcript_);
      sounds_ = makeTranscriptSounds(transcript_);
    } else if (recorded_) {
      front_ = makeRecordingUserInterface(machine.windows, transcript_);
      sounds_ = makeTranscriptSounds(transcript_, &machine.sounds);
    }
    if (recorded_) objects_ = makeRecordingObjects(machine.objects, transcript_);
  }

  platform::UserInterface* front() const { return front_.get(); }
  platform::SoundPlayer* sounds() const { return sounds_.get(); }
  platform::ObjectClasses* objects() const { return objects_.get(); }
  platform::Clock* clock() const { return clock_.get(); }

  bool usable() const { return problem_.empty(); }

  std::string mismatch() const {
    if (!problem_.empty()) return problem_;
    if (const auto mismatch = script_ ? script_->mismatch() : std::nullopt) return name_ + ": " + *mismatch;
    if (recorded_ && !file_) return "the transcript is incomplete";
    return {};
  }
  /// What did not fit, once it is certain and has not been told yet.
  std::string untold() {
    if (told_ || (script_ && script_->next())) return {};
    std::string text = mismatch();
    told_ = !text.empty();
    return text;
  }
  /// No window comes any more: what did not fit, unless it has been told.
  std::string end() {
    if (std::exchange(told_, true)) return {};
    if (script_) endPlay(*script_, &transcript_);
    return mismatch();
  }

 private:
  void prepare(const Machine& machine, const Play& play) {
    if (!play.transcript.empty()) {
      file_.open(play.transcript, std::ios::binary | std::ios::trunc);
      if (!file_) throw BadInput("the transcript cannot be written: " + utf8Of(play.transcript));
      recorded_ = true;
    }
    if (!play.now.empty()) {
      const auto start = parseLocalTime(play.now);
      if (!start) throw BadInput("not a moment of the form YYYY-MM-DDTHH:MM:SS: " + inQuotes(play.now));
      clock_ = machine.clockFrom(*start);
    }
    if (!play.script.empty()) script_ = Script::load(play.script);
  }

  std::string name_;
  std::string problem_;
  bool recorded_ = false;
  bool told_ = false;
  std::optional<Script> script_;
  std::ofstream file_;
  Transcript transcript_{file_};
  std::unique_ptr<platform::UserInterface> front_;
  std::unique_ptr<platform::SoundPlayer> sounds_;
  std::unique_ptr<platform::ObjectClasses> objects_;
  std::unique_ptr<platform::Clock> clock_;
};

namespace {

void tell(const std::string& text) {
  if (!text.empty()) std::fprintf(stderr, "kartix: %s\n", text.c_str());
}

/// What the play has, or else the machine's own.
template <class Part>
Part& either(Part* played, Part& machines) {
  return played ? *played : machines;
}

}  // namespace

TestClerk::TestClerk(Machine machine)
    : machine_(std::move(machine)), performance_(std::make_unique<Performance>(machine_, Play{})) {}

TestClerk::~TestClerk() = default;

void TestClerk::end() noexcept {
  try {
    tell(performance_->end());
  } catch (const std::exception&) {
    std::fputs("kartix: the end of the script could not be told\n", stderr);
  }
}

bool TestClerk::begin(const Play& play) {
  if (open_ > 0) return false;
  auto next = std::make_unique<Performance>(machine_, play);
  end();
  performance_ = std::move(next);
  tell(performance_->untold());
  return performance_->usable();
}

std::string TestClerk::mismatch() const { return performance_->mismatch(); }

TestClerk::ShowResult TestClerk::showModal(forms::Form& form) {
  ++open_;
  const ShowResult result = either(performance_->front(), machine_.windows).showModal(form);
  --open_;
  tell(performance_->untold());
  return result;
}

void TestClerk::repaint() { either(performance_->front(), machine_.windows).repaint(); }

void TestClerk::setHourglass(bool on) { either(performance_->front(), machine_.windows).setHourglass(on); }

void TestClerk::centerForm(forms::Form& form) { either(performance_->front(), machine_.windows).centerForm(form); }

void TestClerk::progressReported(const forms::Form& form, int value, std::string_view status) {
  either(performance_->front(), machine_.windows).progressReported(form, value, status);
}

void TestClerk::playSound(std::string_view alias) {
  either(performance_->sounds(), machine_.sounds).playSound(alias);
}

std::unique_ptr<platform::AutomationObject> TestClerk::createObject(std::string_view progId) {
  return either(performance_->objects(), machine_.objects).createObject(progId);
}

platform::LocalTime TestClerk::now() { return either(performance_->clock(), machine_.clock).now(); }

}  // namespace kartix::adapters
