#include "adapters/script/Transcript.h"

#include <ostream>

#include "adapters/script/JsonText.h"
#include "adapters/script/Script.h"
#include "common/Text.h"
#include "platform/forms/Form.h"

namespace kartix::adapters {
namespace {

constexpr std::string_view mask = "*****";

bool isPassword(const forms::Control* control) {
  const auto* field = dynamic_cast<const forms::TextField*>(control);
  return field && field->password;
}

template <class Texts>
void addTexts(JsonText& json, const Texts& texts) {
  json.open('[');
  for (const std::string& text : texts) json.text(text);
  json.close();
}

void addControl(JsonText& json, const forms::Control& control) {
  json.open('{').name("text").text(isPassword(&control) ? mask : std::string_view(control.text()));
  json.name("enabled").boolean(control.enabled()).name("visible").boolean(control.visible());
  if (const auto* option = dynamic_cast<const forms::OptionButton*>(&control)) {
    json.name("selected").boolean(option->selected());
  }
  if (const auto* combo = dynamic_cast<const forms::ComboBox*>(&control)) {
    addTexts(json.name("items"), combo->items());
  }
  if (const auto* list = dynamic_cast<const forms::ListView*>(&control)) {
    json.name("rows").open('[');
    for (const auto& row : list->rows()) addTexts(json, row);
    json.close();
    addTexts(json.name("columns"), list->columns());
  }
  if (const auto* bar = dynamic_cast<const forms::ProgressBar*>(&control)) {
    json.name("value").number(std::int64_t{bar->value()});
  }
  json.close();
}

void addControls(JsonText& json, const forms::Form& form) {
  json.name("controls").open('{');
  for (const forms::Control* control : form.controls()) addControl(json.name(control->name()), *control);
  json.close();
}

void addArgument(JsonText& json, const Step& step, const forms::Form& form) {
  json.name(actionName(step.action));
  switch (step.action) {
    case Step::Action::choose:
    case Step::Action::click:
      json.text(step.control);
      return;
    case Step::Action::type:
    case Step::Action::select:
      json.open('{');
      for (const auto& [control, text] : step.entries) {
        json.name(control).text(isPassword(form.find(control)) ? mask : std::string_view(text));
      }
      json.close();
      return;
    case Step::Action::pick:
      json.number(static_cast<std::int64_t>(step.row));
      return;
    case Step::Action::close:
      break;
  }
  json.boolean(true);
}

void addValue(JsonText& json, const platform::Value& value) {
  struct Visitor {
    JsonText& json;
    void operator()(std::monostate) const { json.null(); }
    void operator()(bool flag) const { json.boolean(flag); }
    void operator()(std::int64_t number) const { json.number(number); }
    void operator()(double number) const { json.number(number); }
    void operator()(const std::string& text) const { json.text(text); }
  };
  std::visit(Visitor{json}, value);
}

/// A line of the transcript: an object, begun with what kind of event it is.
class Event : public JsonText {
 public:
  explicit Event(std::string_view event) { open('{').name("event").text(event); }
  Event(std::string_view event, const forms::Form& form) : Event(event) { name("window").text(form.name()); }
  Event(std::string_view progId, std::string_view member, const std::vector<platform::Value>& arguments)
      : Event("object") {
    const bool secret = text::equalNoCase(member, "SetDbePass");
    name("progid").text(progId).name("member").text(member).name("args").open('[');
    for (const platform::Value& argument : arguments) addValue(*this, secret ? std::string(mask) : argument);
    close();
  }

  void writeTo(std::ostream& out) { out << close().line() << '\n' << std::flush; }
};

}  // namespace

void Transcript::show(const forms::Form& form) {
  Event event("show", form);
  event.name("caption").text(form.caption());
  event.writeTo(out_);
}

void Transcript::ready(const forms::Form& form) {
  Event event("ready", form);
  event.name("caption").text(form.caption());
  addControls(event, form);
  event.writeTo(out_);
}

void Transcript::step(const Step& step, const forms::Form& form) {
  Event event("step", form);
  addArgument(event, step, form);
  event.writeTo(out_);
}

void Transcript::progress(const forms::Form& form, int value, std::string_view text) {
  Event event("progress", form);
  event.name("value").number(std::int64_t{value}).name("text").text(text);
  event.writeTo(out_);
}

void Transcript::hide(const forms::Form& form) noexcept {
  try {
    Event("hide", form).writeTo(out_);
  } catch (...) {
    out_.setstate(std::ios_base::badbit);
  }
}

void Transcript::mismatch(std::string_view text, const std::vector<forms::Form*>& open, const forms::Form& form) {
  Event event("mismatch", form);
  event.name("text").text(text).name("windows").open('[');
  for (const forms::Form* window : open) event.text(window->name());
  event.close();
  addControls(event, form);
  event.writeTo(out_);
}

void Transcript::mismatch(std::string_view text) {
  Event event("mismatch");
  event.name("text").text(text);
  event.writeTo(out_);
}

void Transcript::sound(std::string_view alias) {
  Event event("sound");
  event.name("alias").text(alias);
  event.writeTo(out_);
}

void Transcript::objectReturned(std::string_view progId, std::string_view member,
                                const std::vector<platform::Value>& arguments, const platform::Value& returned) {
  Event event(progId, member, arguments);
  addValue(event.name("returns"), returned);
  event.writeTo(out_);
}

void Transcript::objectFailed(std::string_view progId, std::string_view member,
                              const std::vector<platform::Value>& arguments, std::string_view error) {
  Event event(progId, member, arguments);
  event.name("error").text(error);
  event.writeTo(out_);
}

}  // namespace kartix::adapters
