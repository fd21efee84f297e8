#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "adapters/script/Scripted.h"
#include "component/Dispatch.h"
#include "faults/calls/FailingCalls.h"
#include "platform/forms/Form.h"
#include "scenarios/Play.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

/// One scenario, played again and again, each time with other calls failing once it has come to `moment`.
struct Sweep {
  const char* scenario;
  const char* moment;     ///< the window that closes, or the status that is shown
  const char* success;    ///< part of what the clerk reads when it was carried out
  const char* change;     ///< part of the request that changes something at the gateway
  bool resultIsOfChange;  ///< the operation succeeds only when the change was made
  int places;             ///< how many, evenly spread; KARTIX_FAULT_PLACES for another number
  enum class Road { ofScenario, tls, ownObjects } road = Road::ofScenario;
  long span = 1;  ///< how many calls fail in a row; KARTIX_FAULT_SPAN for another number
  calls::Kind kind = calls::Kind::allocation;
  int error = ENOMEM;
};

using calls::Kind;

constexpr const char* orderTold = "Bestellung erfolgreich";
constexpr const char* sendingNotification = "Mitteilung wird gesendet...";
constexpr const char* passwordTold = "Passwort wurde geändert";

constexpr auto here = Sweep::Road::ofScenario;

constexpr auto sweeps = std::to_array<Sweep>({
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 80},
    {"order_host_objects__accepted", "MessageBox", orderTold, "", true, 50},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 30, here, 50},
    {"order_host_objects__accepted", "MessageBox", orderTold, "", true, 20, here, 50},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 40, Sweep::Road::ownObjects},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 40, Sweep::Road::tls},
    {"cancellation_own_road__accepted", "Storno wird gesendet...", "Stornierung erfolgreich", "POST /bestellung",
     true, 30},
    {"cancellation_host_objects__accepted", "Storno wird gesendet...", "Stornierung erfolgreich", "", true, 15},
    {"notification_own_road__accepted", sendingNotification, "erfolgreich übertragen", "POST /mitteilung", true, 30},
    {"notification_host_objects__accepted", sendingNotification, "erfolgreich übertragen", "", true, 15},
    {"inquiry_found_own_road__person__hit_list", "Anfrage ZKR", "", "no change", false, 30},
    {"login_password_change__registry", "ZEVISPassChange", passwordTold, "<PASSN>", false, 30},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 15, here, 1, Kind::write, ENOSPC},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 3, here, 1, Kind::flush, EIO},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 15, here, 1, Kind::read, EIO},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 5, here, 1, Kind::connect,
     ECONNREFUSED},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 5, here, 1, Kind::send, EPIPE},
    {"order_own_road__accepted", "MessageBox", orderTold, "POST /bestellung", true, 5, here, 1, Kind::receive,
     ECONNRESET},
    {"login_password_change__registry", "ZEVISPassChange", passwordTold, "<PASSN>", false, 10, here, 1, Kind::write,
     EIO},
    {"login_password_change__registry", "ZEVISPassChange", passwordTold, "<PASSN>", false, 5, here, 1, Kind::rename,
     EACCES},
});

/// What the processes of a sweep have in common.
struct Shared {
  std::atomic<std::size_t> requests;  ///< that the gateway has received
  std::atomic<std::size_t> message;   ///< what has been taken at the gateway, as a number
  std::atomic<int> taken;             ///< changes that the gateway, or the host's object, has taken
  std::atomic<bool> ended;            ///< the operation has returned
  std::int32_t result;
  long counted;
  std::size_t told;              ///< size of `seen`
  std::array<char, 65536> seen;  ///< name and text of the windows that the clerk has seen since the moment
  int failures;
  long places;
  std::array<char, 1 << 20> report;

  /// The gateway goes on from its answer `answered`.
  void reset(std::size_t answered) {
    requests = answered;
    taken = 0;
    ended = false;
    result = 0;
    told = 0;
  }
  std::string_view saw() const { return {seen.data(), told}; }
  void see(std::string_view text) {
    const std::size_t size = std::min(text.size(), seen.size() - told);
    std::memcpy(seen.data() + told, text.data(), size);
    told += size;
  }
  void complain(const std::string& line) {
    ++failures;
    const std::size_t used = std::strlen(report.data());
    std::snprintf(report.data() + used, report.size() - used, "%s\n", line.c_str());
  }
};

long wished(const char* variable, long usual) {
  const char* const value = std::getenv(variable);
  return value ? std::atol(value) : usual;
}

/// Splits the process in two for each place: the one goes on and has its calls fail, the other waits for it,
/// looks at what became of it, and goes on with the next place.
class Places {
 public:
  Places(const Sweep& sweep, Shared& shared, std::filesystem::path directory)
      : sweep_(sweep), shared_(shared), directory_(std::move(directory)) {}

  void start() { started_ = true; }

  /// Something has happened that may be the moment. Returns in the processes that go on.
  void at(std::string_view what) {
    if (!started_ || over_ || what != sweep_.moment) return;
    over_ = true;
    answered_ = shared_.requests;
    if (branch(0, 0)) return;
    if (!shared_.ended || shared_.result != 1) shared_.complain("fails without a fault");
    message_ = shared_.message;
    const long all = shared_.counted;
    const long places = std::min(wished("KARTIX_FAULT_PLACES", sweep_.places), all);
    const long span = wished("KARTIX_FAULT_SPAN", sweep_.span);
    if (const long one = wished("KARTIX_FAULT_PLACE", 0); one > 0) {
      if (branch(one, span)) return;
      std::_Exit(0);
    }
    for (long i = 0; i < places && shared_.failures < 1000; ++i) {
      if (branch(1 + i * all / places, span)) return;
    }
    shared_.places = places;
    std::_Exit(0);
  }

  /// The operation of a process that has gone on is over.
  void end(std::int32_t result) {
    calls::failNoMore();
    shared_.counted = calls::state().counts.at(static_cast<std::size_t>(sweep_.kind));
    shared_.result = result;
    shared_.ended = true;
    over_ = false;
    started_ = false;
  }

  bool watching() const { return started_ && over_; }

 private:
  bool branch(long place, long span) {
    shared_.reset(answered_);
    const std::size_t before = trace().size();
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
      constexpr unsigned patience = 60;
      ::alarm(patience);
      if (!std::freopen((directory_ / "stderr").c_str(), "w", stderr)) std::abort();
      calls::failFrom(sweep_.kind, place, span, sweep_.error);
      return true;
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (place > 0 || status != 0) check(place, status, trace().substr(before));
    return false;
  }

  std::string trace() const { return readBytes(directory_ / "trace.txt"); }

  void check(long place, int status, const std::string& traced) {
    const bool told = *sweep_.success != '\0' && shared_.saw().find(sweep_.success) != std::string_view::npos;
    const bool unclear = traced.find("Ausgang unklar") != std::string::npos;
    const bool changed = shared_.taken > 0;
    std::string fault;
    if (status != 0) fault = "ended with status " + std::to_string(status);
    if (status == 0 && !shared_.ended) fault = "left the operation unended";
    if (shared_.taken > 1) fault += " taken " + std::to_string(shared_.taken) + " times";
    if (changed && *sweep_.change != '\0' && shared_.message != message_) fault += " another message taken";
    if (told && !changed) fault += " told without being taken";
    if (sweep_.resultIsOfChange && told && shared_.result != 1) fault += " told and not returned";
    if (sweep_.resultIsOfChange && shared_.result == 1 && !changed) fault += " succeeded without being taken";
    const bool untold = traced.find("Meldung nicht angezeigt") != std::string::npos;
    if (changed && !told && !unclear && !untold) fault += " silent";
    if (fault.empty()) return;
    shared_.complain("place " + std::to_string(place) + ": " + fault + "; result " + std::to_string(shared_.result) +
                     ", taken " + std::to_string(shared_.taken) + ", seen: " + std::string(shared_.saw()) +
                     "; traced: " + traced.substr(0, 2000) + readBytes(directory_ / "stderr").substr(0, 3000));
  }

  const Sweep& sweep_;
  Shared& shared_;
  std::filesystem::path directory_;
  std::size_t answered_ = 0;  ///< requests, at the moment
  std::size_t message_ = 0;   ///< what is taken without a fault
  bool started_ = false;
  bool over_ = false;
};

/// The scripted clerk, watched.
class Watched : public platform::UserInterface {
 public:
  Watched(platform::UserInterface& clerk, Places& places, Shared& shared)
      : clerk_(clerk), places_(places), shared_(shared) {}

  ShowResult showModal(forms::Form& form) override {
    const std::size_t before = shared_.told;
    if (places_.watching()) note(form);
    try {
      const ShowResult result = clerk_.showModal(form);
      places_.at(form.name());
      return result;
    } catch (...) {
      shared_.told = before;  // it never came to be seen
      throw;
    }
  }
  void repaint() override { clerk_.repaint(); }
  void setHourglass(bool on) override { clerk_.setHourglass(on); }
  void centerForm(forms::Form& form) override { clerk_.centerForm(form); }
  void progressReported(const forms::Form& form, int value, std::string_view status) override {
    places_.at(status);
    clerk_.progressReported(form, value, status);
  }

 private:
  void note(const forms::Form& form) {
    shared_.see(form.name());
    shared_.see(": ");
    if (const forms::Control* const label = form.find("Label1")) shared_.see(label->text());
    shared_.see("\n");
  }

  platform::UserInterface& clerk_;
  Places& places_;
  Shared& shared_;
};

/// The host's objects, counting what they take.
class CountedObjects : public platform::ObjectClasses {
 public:
  CountedObjects(platform::ObjectClasses& classes, Shared& shared) : classes_(classes), shared_(shared) {}

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override {
    return std::make_unique<Counted>(classes_.createObject(progId), shared_);
  }

 private:
  struct Counted : platform::AutomationObject {
    Counted(std::unique_ptr<AutomationObject> object, Shared& counts) : inner(std::move(object)), shared(counts) {}
    platform::Value call(std::string_view member, const std::vector<platform::Value>& arguments) override {
      if (member.starts_with("Do")) ++shared.taken;
      return inner->call(member, arguments);
    }
    std::unique_ptr<AutomationObject> inner;
    Shared& shared;
  };

  platform::ObjectClasses& classes_;
  Shared& shared_;
};

/// Plays up to the moment and through all places. Does not return.
[[noreturn]] void play(const Installation& installation, const Sweep& sweep, Shared& shared) {
  Places places(sweep, shared, installation.file("."));
  adapters::Script script = installation.script();
  const auto clerk = adapters::makeScriptUserInterface(script, nullptr);
  const Json& answers = part(installation.scenario(), "objects");
  const auto classes = adapters::makeScriptedObjects(answers.is_object() ? answers.dump() : "{}");
  Watched watched(*clerk, places, shared);
  CountedObjects objects(*classes, shared);
  Setup setup = installation.setup();
  setup.userInterface = &watched;
  if (answers.is_object()) setup.objects = &objects;
  {
    Component component(setup);
    component.useGatewayObjects();
    dispatch::Object kartix(dispatch::classNamed("Kartix"), component);
    const Json& scenario = installation.scenario();
    beginSession(kartix, scenario.at("clerk"), scenario.at("person"));
    places.start();
    places.end(carryOut(kartix, scenario.at("operation"), scenario.at("lfdnr")));
  }
  std::_Exit(0);
}

Json contentOf(const Sweep& sweep) {
  for (const Scenario& scenario : loadScenarios()) {
    if (scenario.name != sweep.scenario) continue;
    Json content = scenario.content;
    traceCalls(content);
    if (sweep.kind != Kind::allocation) content["settings"]["ZKR.Bestellbuch"] = "$DIR/book.txt";
    if (sweep.road == Sweep::Road::ownObjects) {
      content["settings"]["ZKR.ZKRNeu"] = "1";
      content["objects"] = "gateway";
    }
    if (sweep.road == Sweep::Road::tls) {
      content["gateway"]["tls"] = "good";
      content["settings"]["ZEVIS.GATEWAY"] = "1";
      content["settings"]["ZEVIS.GATEWAYCert"] = "$DIR/client.pem";
      content["settings"]["ZEVIS.GATEWAYPkey"] = "$DIR/client.key";
    }
    content["script"].insert(content["script"].begin(), "MessageBox: click Button[1]");
    return content;
  }
  throw BadScenario(std::string("there is no ") + sweep.scenario);
}

class FailingCalls : public testing::TestWithParam<Sweep> {};

TEST_P(FailingCalls, EndNoOperationSilently) {
  const Sweep& sweep = GetParam();
  void* const memory = ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  Shared& shared = *new (memory) Shared();
  const Json content = contentOf(sweep);
  std::vector<Reply> replies;
  for (auto next = repliesOf(content); replies.size() < part(content, "replies").size();) replies.push_back(next({}));
  const Installation installation(content, [&](const RecordedRequest& request) {
    if (*sweep.change != '\0' && (request.head + request.body).find(sweep.change) != std::string::npos) {
      shared.message = std::hash<std::string>()(request.body);
      ++shared.taken;
    }
    const std::size_t number = shared.requests++;
    return number < replies.size() ? replies[number] : Reply{"", Reply::Then::close};
  });
  const pid_t player = ::fork();
  if (player == 0) play(installation, sweep, shared);
  int status = 0;
  ::waitpid(player, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_GT(shared.places, 0);
  EXPECT_EQ(shared.failures, 0) << shared.report.data();
  RecordProperty("places", static_cast<int>(shared.places));
  ::munmap(memory, sizeof(Shared));
}

std::string nameOf(const testing::TestParamInfo<Sweep>& info) {
  constexpr std::array<const char*, 3> roads = {"", "_over_tls", "_by_own_objects"};
  return std::string(info.param.scenario) + roads.at(static_cast<std::size_t>(info.param.road)) +
         (info.param.span > 1 ? "_in_a_row_" : "_") + calls::kindNames.at(static_cast<std::size_t>(info.param.kind));
}

INSTANTIATE_TEST_SUITE_P(Faults, FailingCalls, testing::ValuesIn(sweeps), nameOf);

}  // namespace
}  // namespace kartix::test
