#include "qt/SampleForms.h"

#include <array>
#include <string_view>

namespace kartix::tests {
namespace {

enum class Kind { label, text, shownText, lines, shownLines, password, option, button, defaultButton, combo, list,
                  progress, status, picture };

struct Part {
  std::string_view form;
  Kind kind;
  std::string name;
  std::string text;
};

const auto parts = std::to_array<Part>({
#include "qt/SampleParts.inc"
});

constexpr auto captions = std::to_array<std::pair<const char*, const char*>>({
    {"MessageBox", "ARGO Kartix - Hinweis"},
    {"SystemMessageBox", "ARGO Kartix"},
    {"StartForm", "ARGO Kartix"},
    {"Auswahl", "ARGO Kartix [Auswahl]"},
    {"ZKR", "ARGO Kartix [Übernahme der Daten]"},
    {"ZEVISPassChange", "ARGO Kartix [ZEVIS-Passwort ändern]"},
    {"Bestellung", "ARGO Kartix [Bestellung der Fahrerkarte]"},
    {"fStorno", "ARGO Kartix [Stornierung einer Bestellung]"},
    {"Mitteilung", "ARGO Kartix [Mitteilung]"},
    {"BestellFehler", "Fehler bei der Bestellung / Stornierung / Mitteilung"},
});

void addText(SampleForm& form, const Part& part) {
  auto& field = form.add<forms::TextField>(part.name, part.text);
  field.setReadOnly(part.kind == Kind::shownText || part.kind == Kind::shownLines);
  field.multiLine = part.kind == Kind::lines || part.kind == Kind::shownLines;
  field.password = part.kind == Kind::password;
}

void addList(SampleForm& form, const Part& part) {
  auto& list = form.add<forms::ListView>(part.name);
  list.setColumns({"Kartennummer", "gültig bis", "FSNR", "Name", "Vorname", "Wohnort"});
  list.setRows({{"DF000000123456780", "14.03.2027", "B072RRE2I55", "von der Heydt", "Maximilian", "24937 Flensburg"},
                {"DF000000765432100", "01.11.2025", "K11T09AA7", "Heydt", "Max", "99084 Erfurt"}});
}

void add(SampleForm& form, const Part& part) {
  switch (part.kind) {
    case Kind::label: form.add<forms::Label>(part.name, part.text); break;
    case Kind::option: form.add<forms::OptionButton>(part.name, part.text); break;
    case Kind::button: form.add<forms::Button>(part.name, part.text); break;
    case Kind::defaultButton: form.add<forms::Button>(part.name, part.text).isDefault = true; break;
    case Kind::combo: form.add<forms::ComboBox>(part.name, part.text).setItems({"Standard", part.text}); break;
    case Kind::list: addList(form, part); break;
    case Kind::progress: form.add<forms::ProgressBar>(part.name).setValue(40); break;
    case Kind::status: form.add<forms::StatusBar>(part.name, part.text); break;
    case Kind::picture: form.add<forms::Picture>(part.name); break;
    default: addText(form, part);
  }
}

}  // namespace

std::unique_ptr<SampleForm> sampleForm(const std::string& name) {
  for (const auto& [form, caption] : captions) {
    if (name != form) continue;
    auto made = std::make_unique<SampleForm>(form, caption);
    for (const Part& part : parts) {
      if (part.form == name) add(*made, part);
    }
    return made;
  }
  return nullptr;
}

std::vector<std::unique_ptr<SampleForm>> sampleForms() {
  std::vector<std::unique_ptr<SampleForm>> forms;
  forms.reserve(captions.size());
  for (const auto& [form, caption] : captions) forms.push_back(sampleForm(form));
  return forms;
}

}  // namespace kartix::tests
