#include <QApplication>
#include <QThread>
#include <memory>
#include <vector>

#include "adapters/qt/Application.h"
#include "adapters/qt/InputBlock.h"
#include "adapters/qt/KeyWatch.h"
#include "adapters/qt/Qt.h"
#include "adapters/qt/Showing.h"

namespace kartix::adapters {
namespace {

class QtUserInterface final : public platform::UserInterface {
 public:
  QtUserInterface() = default;
  ~QtUserInterface() override {
    try {
      setHourglass(false);
    } catch (...) {
      // The pointer is the least of what goes.
    }
  }
  QtUserInterface(const QtUserInterface&) = delete;
  QtUserInterface& operator=(const QtUserInterface&) = delete;

  ShowResult showModal(forms::Form& form) override {
    const auto obstacle = application_.obstacle();
    try {
      const ShowResult result = obstacle ? *obstacle : show(form);
      release();
      return result;
    } catch (...) {
      release();
      throw;
    }
  }

  void repaint() override {
    if (!open_.empty()) qt::InputBlock::paintPending(keys_.get());
  }

  void setHourglass(bool on) override {
    hourglass_ = on;
    showHourglass();
  }

  void centerForm(forms::Form& form) override {
    for (qt::Showing* showing : open_) {
      if (&showing->form() == &form) showing->window().centre();
    }
  }

  void progressReported(const forms::Form&, int, std::string_view) override {}

 private:
  /// A showing is among the open ones until this goes.
  struct Listed {
    Listed(std::vector<qt::Showing*>& open, qt::Showing& showing) : showings(open) { showings.push_back(&showing); }
    ~Listed() { showings.pop_back(); }
    Listed(const Listed&) = delete;
    Listed& operator=(const Listed&) = delete;
    std::vector<qt::Showing*>& showings;
  };

  ShowResult show(forms::Form& form) {
    // The watch keeps what it knows when the application object goes and another one comes.
    if (!keys_) keys_ = std::make_unique<qt::KeyWatch>();
    keys_->begin();
    // Keys typed while the program was at work are not meant for a window that nobody has seen yet.
    qt::InputBlock::paintPending(keys_.get());
    showHourglass();
    qt::Showing showing(form, open_.empty() ? QApplication::activeWindow() : &open_.back()->window());
    if (!showing.window().designed()) return ShowResult::noDisplay;
    const Listed listed(open_, showing);
    showing.run();
    return ShowResult::ended;
  }

  void release() {
    // The pointer goes with the application object.
    if (open_.empty() && application_.release()) hourglassShown_ = false;
  }

  /// The pointer can be changed only once there is an application; until then the wish is kept.
  void showHourglass() {
    if (hourglass_ == hourglassShown_ || !qobject_cast<QApplication*>(QCoreApplication::instance())) return;
    if (hourglass_) QApplication::setOverrideCursor(Qt::WaitCursor);
    if (!hourglass_) QApplication::restoreOverrideCursor();
    hourglassShown_ = hourglass_;
  }

  qt::Application application_{qt::Application::Fallback::none};
  std::unique_ptr<qt::KeyWatch> keys_;
  std::vector<qt::Showing*> open_;
  bool hourglass_ = false;
  bool hourglassShown_ = false;
};

}  // namespace

std::unique_ptr<platform::UserInterface> makeQtUserInterface() { return std::make_unique<QtUserInterface>(); }

}  // namespace kartix::adapters
