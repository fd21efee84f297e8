#include <algorithm>
#include <vector>

#include "adapters/windows/ui/Messages.h"
#include "adapters/windows/ui/NativeUi.h"
#include "adapters/windows/ui/Showing.h"

namespace kartix::adapters {
namespace {

class NativeUserInterface final : public platform::UserInterface {
 public:
  ShowResult showModal(forms::Form& form) override {
    if (!native::desktopIsVisible()) return ShowResult::noDisplay;
    // Keys typed while the program was at work are not meant for a window that nobody has seen yet.
    native::dispatchWithoutInput(&keys_);
    native::Showing showing(form, open_.empty() ? GetActiveWindow() : open_.back()->window().handle(), hourglass_);
    if (!showing.window().made()) return ShowResult::noDisplay;
    const Listed listed(open_, showing);
    showing.run([this](MSG& message) { dispatch(message); });
    return ShowResult::ended;
  }

  void repaint() override {
    if (open_.empty()) return;
    native::dispatchWithoutInput(&keys_);
    for (native::Showing* const showing : open_) showing->window().paintNow();
  }

  void setHourglass(bool on) override {
    hourglass_ = on;
    if (!open_.empty()) SetCursor(LoadCursorW(nullptr, on ? IDC_WAIT : IDC_ARROW));
  }

  void centerForm(forms::Form& form) override {
    for (native::Showing* const showing : open_) {
      if (&showing->form() == &form) showing->window().centre();
    }
  }

  void progressReported(const forms::Form&, int, std::string_view) override {}

 private:
  /// A showing is among the open ones until this goes.
  struct Listed {
    Listed(std::vector<native::Showing*>& open, native::Showing& showing) : showings(open) {
      showings.push_back(&showing);
    }
    ~Listed() { showings.pop_back(); }
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;
    std::vector<native::Showing*>& showings;
  };

  void dispatch(MSG& message) {
    keys_.note(message);
    native::Window* const window = windowOf(message.hwnd);
    if (window && (keys_.refuses(message, *window) || window->takeKey(message))) return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
    if (window) window->dispatched(message);
  }

  native::Window* windowOf(HWND handle) const {
    const auto found =
        std::find_if(open_.begin(), open_.end(), [&](native::Showing* s) { return s->window().owns(handle); });
    return found == open_.end() ? nullptr : &(*found)->window();
  }

  native::KeyWatch keys_;
  std::vector<native::Showing*> open_;
  bool hourglass_ = false;
};

}  // namespace

std::unique_ptr<platform::UserInterface> makeNativeUserInterface() { return std::make_unique<NativeUserInterface>(); }

}  // namespace kartix::adapters
