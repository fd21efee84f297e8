#include "adapters/script/Present.h"

#include <algorithm>
#include <cstddef>

#include "adapters/script/Script.h"
#include "platform/forms/Form.h"

namespace kartix::adapters {
namespace {

/// More entries or rows than this are counted only.
constexpr std::size_t longestList = 20;

std::string line(const std::string& what) { return "\n  " + what; }

template <class Items, class Name>
std::string join(const Items& items, Name name) {
  std::string joined;
  const std::size_t shown = std::min<std::size_t>(items.size(), longestList);
  for (std::size_t i = 0; i < shown; ++i) joined += (i == 0 ? "" : ", ") + name(items[i]);
  if (items.size() > shown) joined += ", and " + std::to_string(items.size() - shown) + " more";
  return joined.empty() ? "none" : joined;
}

std::string nameAndState(const forms::Control& control) {
  const char* const state = !control.visible() ? " (hidden)" : !control.enabled() ? " (disabled)" : "";
  return inQuotes(control.name()) + state;
}

std::string describeRows(const forms::ListView& list) {
  std::string lines;
  const std::size_t shown = std::min(list.rows().size(), longestList);
  for (std::size_t row = 0; row < shown; ++row) {
    lines += line("row " + std::to_string(row) + " of " + inQuotes(list.name()) + ": " +
                  join(list.rows()[row], [](const std::string& cell) { return inQuotes(cell); }));
  }
  if (list.rows().size() > shown) lines += line("and " + std::to_string(list.rows().size() - shown) + " more rows");
  return lines;
}

}  // namespace

std::string describePresent(const std::vector<forms::Form*>& open, const forms::Form& form) {
  std::string text = line("open windows: " + join(open, [](const forms::Form* f) { return inQuotes(f->name()); }));
  std::string controls;
  std::string entries;
  for (const forms::Control* control : form.controls()) {
    controls += (controls.empty() ? "" : ", ") + nameAndState(*control);
    if (const auto* combo = dynamic_cast<const forms::ComboBox*>(control)) {
      entries += line("entries of " + inQuotes(combo->name()) + ": " + join(combo->items(), inQuotes));
    }
    if (const auto* list = dynamic_cast<const forms::ListView*>(control)) entries += describeRows(*list);
  }
  return text + line("controls of " + inQuotes(form.name()) + ": " + (controls.empty() ? "none" : controls)) +
         entries;
}

}  // namespace kartix::adapters
