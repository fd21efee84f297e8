#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

#include "adapters/qt/Qt.h"
#include "platform/forms/Form.h"
#include "qt/SampleWindows.h"
#include "support/Files.h"

namespace kartix::tests {
namespace {

using Names = std::set<std::string>;

/// Adds what `entry` of the page stands for: "Label[0..2,5]" is four controls.
void addNames(const std::string& entry, Names& names) {
  const std::size_t bracket = entry.find('[');
  if (bracket == std::string::npos) {
    names.insert(entry);
    return;
  }
  std::istringstream ranges(entry.substr(bracket + 1, entry.size() - bracket - 2));
  for (std::string range; std::getline(ranges, range, ',');) {
    const std::size_t dots = range.find("..");
    const int last = std::stoi(dots == std::string::npos ? range : range.substr(dots + 2));
    for (int index = std::stoi(range); index <= last; ++index) {
      names.insert(entry.substr(0, bracket) + "[" + std::to_string(index) + "]");
    }
  }
}

/// Each window of the page with the controls that it names: headings "### Window: ...", rows "| `control` | ...".
std::map<std::string, Names> windowsOfPage() {
  constexpr std::string_view heading = "### ";
  constexpr std::string_view row = "| `";
  std::map<std::string, Names> windows;
  std::istringstream page(test::readBytes(KARTIX_DOCUMENTS "/embedding.md"));
  std::string window;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with(heading)) window = line.substr(heading.size(), line.find(':') - heading.size());
    if (window.empty() || !line.starts_with(row)) continue;
    addNames(line.substr(row.size(), line.find('`', row.size()) - row.size()), windows[window]);
  }
  return windows;
}

TEST(EmbeddingPage, NamesEveryControlOfEveryWindow) {
  const auto front = adapters::makeQtUserInterface();
  SampleWindows samples(*front);
  std::map<std::string, Names> windows;
  for (const auto& form : samples.all()) {
    for (const forms::Control* control : form->controls()) windows[form->name()].insert(control->name());
  }
  EXPECT_EQ(windowsOfPage(), windows);
}

}  // namespace
}  // namespace kartix::tests
