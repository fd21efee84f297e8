#include "bench/Bureau.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace kartix::bench {

double threadSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Plays the script from its beginning in each operation.
class Bureau::Clerk final : public platform::UserInterface {
 public:
  explicit Clerk(Bureau& bureau) : bureau_(bureau), steps_(bureau.installation_.script()) {}

  void begin() {
    script_ = steps_;
    play_ = adapters::makeScriptUserInterface(script_, nullptr);
  }
  bool done() const { return !script_.mismatch(); }

  ShowResult showModal(forms::Form& form) override {
    if (bureau_.watch) bureau_.watch(form, true);
    const ShowResult result = play_->showModal(form);
    if (bureau_.watch) bureau_.watch(form, false);
    return result;
  }
  void repaint() override { play_->repaint(); }
  void setHourglass(bool on) override { play_->setHourglass(on); }
  void centerForm(forms::Form& form) override { play_->centerForm(form); }
  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    play_->progressReported(form, value, status);
  }

 private:
  Bureau& bureau_;
  const adapters::Script steps_;
  adapters::Script script_ = steps_;
  std::unique_ptr<platform::UserInterface> play_;
};

Bureau::Bureau(const test::Json& scenario, const std::string& answer, const std::string& headers)
    : installation_(
          scenario,
          [this, reply = test::Reply{test::answer(answer, "200 OK", headers)}](const test::RecordedRequest& request) {
            sent_ = request.body;
            connections_ = request.connection + 1;
            return reply;
          }),
      clerk_(std::make_unique<Clerk>(*this)) {
  // Settings are seldom of the last moment, and read again until they are older.
  std::this_thread::sleep_for(std::chrono::seconds(2));
}

Bureau::~Bureau() = default;

bool Bureau::operate(bool fresh, platform::UserInterface* front) {
  clerk_->begin();
  if (fresh || !component_) {
    Setup setup = installation_.setup();
    setup.userInterface = front ? front : clerk_.get();
    setup.sounds = &silence_;
    kartix_.reset();
    component_ = std::make_unique<Component>(setup);
    kartix_.emplace(dispatch::classNamed("Kartix"), *component_);
  }
  const auto text = [&](const char* name) { return installation_.scenario().at(name).get<std::string>(); };
  return begin() && test::carryOut(*kartix_, text("operation"), text("lfdnr")) == 1 && (front || clerk_->done());
}

bool Bureau::begin() {
  const test::Json& scenario = installation_.scenario();
  return test::beginSession(*kartix_, scenario.at("clerk"), scenario.at("person"));
}

std::string Bureau::address(const std::string& path, bool tls) const {
  return (tls ? "https://127.0.0.1:" : "http://127.0.0.1:") + installation_.names().at("PORT").get<std::string>() +
         path;
}

}  // namespace kartix::bench
