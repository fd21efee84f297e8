#include <algorithm>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "adapters/script/Present.h"
#include "adapters/script/Script.h"
#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"
#include "common/Paths.h"
#include "common/Text.h"
#include "platform/Stage.h"
#include "platform/forms/Form.h"

namespace kartix::adapters {
namespace {

/// How often the close box of one window is tried, and how often all of them together, before windows are taken away.
constexpr int attemptsForWindow = 100;
constexpr int attemptsForPlay = 1000;

/// The window as the person who wrote the script would recognise it; a message with its text.
std::string describeWaiting(const forms::Form& form) {
  std::string text = "window " + inQuotes(form.name()) + " (" + inQuotes(form.caption());
  const auto* label = form.find("Label1");
  if (label && !label->text().empty()) text += ": " + inQuotes(text::replaceAll(label->text(), "\r\n", " "));
  return text + ") waiting";
}

/// What keeps a clerk from using `control`; empty when nothing does.
std::string obstacle(const forms::Control& control) {
  if (!control.visible()) return inQuotes(control.name()) + " is hidden";
  if (!control.enabled()) return inQuotes(control.name()) + " is disabled";
  return {};
}

/// Takes the place of the text by typing each character through the key filter. False when the field takes none.
bool typeText(forms::TextField& field, std::string_view text) {
  if (!field.userEdit({})) return false;
  for (std::size_t position = 0; position < text.size();) {
    const auto key = field.userKey(text::nextCharacter(text, position));
    if (!key) continue;
    std::string whole = field.text();
    text::append(whole, *key);
    if (!field.userEdit(std::move(whole))) return false;
  }
  return true;
}

/// Raises `name`'s event through `use`, which tells whether the control took it. Gives what stood in the way; empty
/// when nothing did.
template <class C, class Use>
std::string useControl(forms::Form& form, const std::string& name, std::string_view unfit, Use use) {
  if (!form.shown()) return "the window closed before " + inQuotes(name);
  forms::Control* const control = form.find(name);
  if (!control) return "no control " + inQuotes(name);
  auto* const fitting = dynamic_cast<C*>(control);
  if (!fitting) return inQuotes(name) + " " + std::string(unfit);
  std::string reason = obstacle(*control);
  if (reason.empty() && !use(*fitting)) reason = inQuotes(name) + " " + std::string(unfit);
  return reason;
}

std::string selectEntry(forms::Form& form, const std::string& name, const std::string& text) {
  return useControl<forms::ComboBox>(form, name, "has no entry " + inQuotes(text), [&](forms::ComboBox& combo) {
    const auto entry = std::find(combo.items().begin(), combo.items().end(), text);
    return entry != combo.items().end() && combo.userSelect(static_cast<std::size_t>(entry - combo.items().begin()));
  });
}

std::string pickRow(forms::Form& form, std::size_t row) {
  for (forms::Control* control : form.controls()) {
    auto* const list = dynamic_cast<forms::ListView*>(control);
    if (!list) continue;
    const std::string unfit = "has " + std::to_string(list->rows().size()) + " row(s)";
    return useControl<forms::ListView>(form, list->name(), unfit,
                                       [&](forms::ListView& l) { return l.userDoubleClick(row); });
  }
  return "the window has no list";
}

/// Does what the step says. Gives what stood in the way; empty when nothing did.
std::string take(const Step& step, forms::Form& form) {
  std::string reason;
  switch (step.action) {
    case Step::Action::choose:
      return useControl<forms::OptionButton>(form, step.control, "is no option button",
                                             [](forms::OptionButton& option) { return option.userClick(); });
    case Step::Action::click:
      return useControl<forms::Control>(form, step.control, "cannot be clicked",
                                        [](forms::Control& control) { return control.userClick(); });
    case Step::Action::type:
      for (const auto& [name, text] : step.entries) {
        reason = useControl<forms::TextField>(
            form, name, "takes no text", [&value = text](forms::TextField& field) { return typeText(field, value); });
        if (!reason.empty()) break;
      }
      return reason;
    case Step::Action::select:
      for (const auto& [name, text] : step.entries) {
        reason = selectEntry(form, name, text);
        if (!reason.empty()) break;
      }
      return reason;
    case Step::Action::pick:
      return pickRow(form, step.row);
    case Step::Action::close:
      form.userClose();
      break;
  }
  return reason;
}

class ScriptUserInterface final : public platform::UserInterface {
 public:
  ScriptUserInterface(Script& script, Transcript* transcript, platform::Stage* stage, PlayOptions options)
      : script_(script), transcript_(transcript), stage_(stage), options_(std::move(options)) {}

  ShowResult showModal(forms::Form& form) override {
    if (attempts_ >= attemptsForPlay) {
      fail(form, script_.place(), "the operation to end", "window " + inQuotes(form.name()) + " opening without end");
      return ShowResult::noDisplay;
    }
    const Opened opened(*this, form);
    int closed = 0;
    form.firePaintedTimer();
    while (form.shown()) {
      wait(form);
      if (const Step* step = script_.next()) {
        play(*step, form);
      } else if (++attempts_; ++closed > attemptsForWindow || attempts_ > attemptsForPlay) {
        fail(form, script_.place(), "window " + inQuotes(form.name()) + " to close",
             "it stayed open, however often it was closed");
        form.hide();
      } else {
        form.userClose();
      }
      form.firePaintedTimer();
    }
    return ShowResult::ended;
  }

  void repaint() override {
    if (!stage_) return;
    for (forms::Form* form : open_) stage_->update(*form);
  }

  void setHourglass(bool) override {}
  void centerForm(forms::Form&) override {}

  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    if (transcript_) transcript_->progress(form, value, status);
    repaint();
  }

 private:
  /// A form while it is shown; taken off again on every way out.
  class Opened {
   public:
    Opened(ScriptUserInterface& owner, forms::Form& form) : owner_(owner), form_(form), listed_(owner.open_, form) {
      if (owner_.transcript_) owner_.transcript_->show(form_);
      if (owner_.stage_) owner_.stage_->show(form_);
      form_.markShown();
    }
    ~Opened() {
      // Whatever goes wrong here, the play goes on without the window.
      form_.protect([this] {
        if (owner_.stage_) owner_.stage_->hide(form_);
      });
      if (owner_.transcript_) owner_.transcript_->hide(form_);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

   private:
    struct Listed {
      Listed(std::vector<forms::Form*>& open, forms::Form& form) : forms(open) { forms.push_back(&form); }
      ~Listed() { forms.pop_back(); }
      Listed(const Listed&) = delete;
      Listed& operator=(const Listed&) = delete;
      std::vector<forms::Form*>& forms;
    };

    ScriptUserInterface& owner_;
    forms::Form& form_;
    Listed listed_;
  };

  void wait(forms::Form& form) {
    if (transcript_) transcript_->ready(form);
    if (!stage_) return;
    stage_->update(form);
    if (options_.picture) {
      const std::string file = options_.picture(form);
      if (!file.empty() && !stage_->savePicture(form, file)) {
        fail(form, script_.place(), "a picture of window " + inQuotes(form.name()),
             "it cannot be written to " + file);
      }
    }
    if (options_.pause.count() > 0) std::this_thread::sleep_for(options_.pause);
  }

  void play(const Step& step, forms::Form& form) {
    if (step.window != form.name()) {
      fail(form, script_.place(), "to " + adapters::describe(step), describeWaiting(form));
      return;
    }
    if (transcript_) transcript_->step(step, form);
    // A step may open further windows, which take the steps after it: it counts as taken before it is carried out.
    const Script::Place place = script_.advance();
    const std::string reason = take(step, form);
    if (!reason.empty()) fail(form, place, "to " + adapters::describe(step), reason);
  }

  void fail(const forms::Form& form, Script::Place place, const std::string& expected, const std::string& found) {
    if (!script_.failAt(place, expected, found)) return;
    if (transcript_) transcript_->mismatch(*script_.mismatch(), open_, form);
    script_.addToFailure(describePresent(open_, form));
  }

  Script& script_;
  Transcript* transcript_;
  platform::Stage* stage_;
  PlayOptions options_;
  std::vector<forms::Form*> open_;
  int attempts_ = 0;
};

}  // namespace

std::function<std::string(const forms::Form&)> picturesIn(std::filesystem::path dir) {
  return [dir = std::move(dir), seen = std::set<std::string>()](const forms::Form& form) mutable -> std::string {
    if (!seen.insert(form.name()).second) return {};
    const std::string number = std::to_string(seen.size());
    const std::string file = (number.size() < 2 ? "0" + number : number) + "-" + form.name() + ".png";
    return utf8Of(dir / file);
  };
}

std::optional<std::string> endPlay(const Script& script, Transcript* transcript) {
  auto mismatch = script.mismatch();
  if (mismatch && script.next() && transcript) transcript->mismatch(*mismatch);
  return mismatch;
}

std::unique_ptr<platform::UserInterface> makeScriptUserInterface(Script& script, Transcript* transcript,
                                                                 platform::Stage* stage, PlayOptions options) {
  return std::make_unique<ScriptUserInterface>(script, transcript, stage, std::move(options));
}

}  // namespace kartix::adapters
