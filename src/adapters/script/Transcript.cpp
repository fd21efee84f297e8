#include "adapters/script/Transcript.h"

#include <ostream>

#include "adapters/script/InputFile.h"
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

Json describeControl(const forms::Control& control) {
  Json json;
  json["text"] = isPassword(&control) ? std::string(mask) : control.text();
  json["enabled"] = control.enabled();
  json["visible"] = control.visible();
  if (const auto* option = dynamic_cast<const forms::OptionButton*>(&control)) json["selected"] = option->selected();
  if (const auto* combo = dynamic_cast<const forms::ComboBox*>(&control)) json["items"] = combo->items();
  if (const auto* list = dynamic_cast<const forms::ListView*>(&control)) {
    json["rows"] = list->rows();
    json["columns"] = list->columns();
  }
  if (const auto* bar = dynamic_cast<const forms::ProgressBar*>(&control)) json["value"] = bar->value();
  return json;
}

Json describeControls(const forms::Form& form) {
  Json controls = Json::object();
  for (const forms::Control* control : form.controls()) controls[control->name()] = describeControl(*control);
  return controls;
}

Json windowEvent(std::string_view event, const forms::Form& form) {
  return {{"event", event}, {"window", form.name()}};
}

Json stepArgument(const Step& step, const forms::Form& form) {
  switch (step.action) {
    case Step::Action::choose:
    case Step::Action::click:
      return step.control;
    case Step::Action::type:
    case Step::Action::select: {
      Json entries = Json::object();
      for (const auto& [control, text] : step.entries) {
        entries[control] = isPassword(form.find(control)) ? std::string(mask) : text;
      }
      return entries;
    }
    case Step::Action::pick:
      return step.row;
    case Step::Action::close:
      break;
  }
  return true;
}

Json toJson(const platform::Value& value) {
  struct Visitor {
    Json operator()(std::monostate) const { return nullptr; }
    Json operator()(bool flag) const { return flag; }
    Json operator()(std::int64_t number) const { return number; }
    Json operator()(double number) const { return number; }
    Json operator()(const std::string& text) const { return text; }
  };
  return std::visit(Visitor{}, value);
}

Json objectEvent(std::string_view progId, std::string_view member, const std::vector<platform::Value>& arguments) {
  const bool secret = text::equalNoCase(member, "SetDbePass");
  Json args = Json::array();
  for (const platform::Value& argument : arguments) args.push_back(secret ? Json(mask) : toJson(argument));
  return {{"event", "object"}, {"progid", progId}, {"member", member}, {"args", args}};
}

void write(std::ostream& out, const Json& event) { out << toLine(event) << '\n' << std::flush; }

}  // namespace

void Transcript::show(const forms::Form& form) {
  Json event = windowEvent("show", form);
  event["caption"] = form.caption();
  write(out_, event);
}

void Transcript::ready(const forms::Form& form) {
  Json event = windowEvent("ready", form);
  event["caption"] = form.caption();
  event["controls"] = describeControls(form);
  write(out_, event);
}

void Transcript::step(const Step& step, const forms::Form& form) {
  Json event = windowEvent("step", form);
  event[std::string(actionName(step.action))] = stepArgument(step, form);
  write(out_, event);
}

void Transcript::progress(const forms::Form& form, int value, std::string_view text) {
  Json event = windowEvent("progress", form);
  event["value"] = value;
  event["text"] = text;
  write(out_, event);
}

void Transcript::hide(const forms::Form& form) noexcept {
  try {
    write(out_, windowEvent("hide", form));
  } catch (...) {
    out_.setstate(std::ios_base::badbit);
  }
}

void Transcript::mismatch(std::string_view text, const std::vector<forms::Form*>& open, const forms::Form& form) {
  Json event = windowEvent("mismatch", form);
  event["text"] = text;
  Json windows = Json::array();
  for (const forms::Form* window : open) windows.push_back(window->name());
  event["windows"] = std::move(windows);
  event["controls"] = describeControls(form);
  write(out_, event);
}

void Transcript::mismatch(std::string_view text) { write(out_, {{"event", "mismatch"}, {"text", text}}); }

void Transcript::sound(std::string_view alias) { write(out_, {{"event", "sound"}, {"alias", alias}}); }

void Transcript::objectReturned(std::string_view progId, std::string_view member,
                                const std::vector<platform::Value>& arguments, const platform::Value& returned) {
  Json event = objectEvent(progId, member, arguments);
  event["returns"] = toJson(returned);
  write(out_, event);
}

void Transcript::objectFailed(std::string_view progId, std::string_view member,
                              const std::vector<platform::Value>& arguments, std::string_view error) {
  Json event = objectEvent(progId, member, arguments);
  event["error"] = error;
  write(out_, event);
}

}  // namespace kartix::adapters
