#include "adapters/script/Scripted.h"
#include "adapters/script/Transcript.h"

namespace kartix::adapters {
namespace {

class RecordingUserInterface final : public platform::UserInterface {
 public:
  RecordingUserInterface(platform::UserInterface& front, Transcript& transcript)
      : front_(front), transcript_(transcript) {}

  ShowResult showModal(forms::Form& form) override {
    transcript_.show(form);
    const ShowResult result = front_.showModal(form);
    transcript_.hide(form);
    return result;
  }

  void repaint() override { front_.repaint(); }
  void setHourglass(bool on) override { front_.setHourglass(on); }
  void centerForm(forms::Form& form) override { front_.centerForm(form); }

  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    transcript_.progress(form, value, status);
    front_.progressReported(form, value, status);
  }

 private:
  platform::UserInterface& front_;
  Transcript& transcript_;
};

}  // namespace

std::unique_ptr<platform::UserInterface> makeRecordingUserInterface(platform::UserInterface& front,
                                                                    Transcript& transcript) {
  return std::make_unique<RecordingUserInterface>(front, transcript);
}

}  // namespace kartix::adapters
