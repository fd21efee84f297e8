#include "dialogs/Progress.h"

#include <algorithm>
#include <string>

#include "platform/UserInterface.h"
#include "runtime/Runtime.h"

namespace kartix {

void showProgress(Runtime& runtime, const ProgressControls& controls, std::int16_t percent, std::string_view text,
                  bool animate) {
  platform::UserInterface& userInterface = runtime.machine.userInterface;
  const int target = std::clamp<int>(percent, 0, 100);
  while (animate && controls.bar.value() != target) {
    controls.bar.setValue(controls.bar.value() + (target > controls.bar.value() ? 1 : -1));
    userInterface.repaint();
  }
  controls.bar.setValue(target);
  if (!text.empty()) controls.status.setText(std::string(text));
  userInterface.repaint();
  userInterface.progressReported(controls.bar.form(), controls.bar.value(), controls.status.text());
}

}  // namespace kartix
