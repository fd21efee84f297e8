#include <gtest/gtest.h>
#include <malloc.h>
#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <random>
#include <set>

#include "adapters/curl/Curl.h"
#include "adapters/files/Files.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "faults/calls/FailingCalls.h"
#include "gateway/OrderBook.h"
#include "scenarios/Play.h"
#include "soak/Clerk.h"
#include "soak/FailingGateway.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

/// An operation, and what the clerk and the host were told of it. Its card record has the same number.
struct Operation {
  std::size_t number = 0;
  Kind kind = Kind::order;
  std::int32_t result = -1;
  bool disturbed = false;  ///< a call into the system has failed meanwhile
  bool toldDone = false;
  bool toldNumber = false;
  bool recorded = false;      ///< the host's record was told to be written
  int traced = 0;             ///< lines that call it unclear
  std::string lastWord = {};  ///< that the clerk read
};

struct KindNames {
  const char* message;
  const char* operation;
};

/// In the order of `Kind`.
constexpr std::array<KindNames, 5> kindNames = {{{"Bestellung", "FahrerKartenBestellung"},
                                                 {"Storno", "KartenStorno"},
                                                 {"Mitteilung", "KartenMitteilung"},
                                                 {"Anfrage", "ZKRAnfrage"},
                                                 {"Passwort", "ZKRAnfrage"}}};

const KindNames& namesOf(Kind kind) { return kindNames.at(static_cast<std::size_t>(kind)); }

/// As the trace names it.
std::string messageOf(const Operation& operation) {
  return std::string(namesOf(operation.kind).message) + " 4711/" + std::to_string(operation.number);
}

/// Who is inquired after, and has one card only: an inquiry loads them all.
constexpr const char* inquired = "4712";

/// A card record for each operation. The pictures have the size that is sent.
Json installed(const std::vector<Operation>& operations, const std::string& port) {
  Json scenario = loadBase("order.json");
  const Json like = scenario["rows"]["fahrerkarte"][0];
  Json& rows = scenario["rows"]["fahrerkarte"] = Json::array();
  for (const Operation& operation : operations) {
    Json row = like;
    row["lfdnr"] = std::to_string(operation.number);
    row["kartennr"] = row["kartennralt"] = FailingGateway::cardNumber(operation.number);
    if (operation.kind == Kind::cancellation) row["vorgangschl"] = "ST";
    rows.push_back(std::move(row));
  }
  Json& persons = scenario["rows"]["personalien"];
  persons.push_back(persons[0]);
  persons[1]["personennummer"] = inquired;
  rows.push_back({{"personennummer", inquired}, {"lfdnr", "1"}});
  for (const auto& [name, size] : {std::pair("JP0", "368x490"), std::pair("JP1", "740x168")}) {
    scenario["pictures"]["bilder/00/000/04500/0000004711." + std::string(name)] = size;
  }
  Json& settings = scenario["settings"];
  settings["ZEVIS.ZEVISPort"] = port;
  settings["ZKR.AllowPassChange"] = "1";
  scenario["ini"] = Json::object();  // takes the cookies of the sessions
  traceCalls(scenario);
  return scenario;
}

/// A component on one of the two roads, with what it works with.
class Workstation {
 public:
  explicit Workstation(const Json& scenario) : installation_(scenario) {
    Setup setup = installation_.setup();
    setup.userInterface = &clerk_;
    setup.sounds = &clerk_;
    setup.http = http_.get();
    component_ = std::make_unique<Component>(setup);
    component_->useGatewayObjects();
  }

  /// With a host that writes what has been ordered to a record of its own. Calls into the system fail, or none does.
  void carryOut(Operation& operation, const std::function<void()>& beginToFail) {
    const bool inquiry = operation.kind == Kind::inquiry || operation.kind == Kind::passwordChange;
    clerk_.wantPassword(operation.kind == Kind::passwordChange ? "neu" + std::to_string(operation.number) : "");
    {
      dispatch::Object kartix(dispatch::classNamed("Kartix"), *component_);
      if (!beginSession(kartix, "Meier", inquiry ? inquired : "4711")) return;
      clerk_.takeMessages();
      beginToFail();
      operation.result =
          test::carryOut(kartix, namesOf(operation.kind).operation, inquiry ? "1" : std::to_string(operation.number));
      note(operation, clerk_.takeMessages());
      if (operation.kind == Kind::order && operation.result == 1) operation.recorded = record(operation.number);
      operation.disturbed = calls::failNoMore() > 0;
    }
    operation.traced = tracedUnclear(messageOf(operation));
  }

  std::string storedPassword() const { return installation_.storedSetting("ZKR.ZEVISPass"); }
  /// Numbers of the cards that the host has recorded.
  void readRecorded(std::multiset<std::string>& numbers) const {
    sqlite3* raw = nullptr;
    sqlite3_open(installation_.file("host.db").c_str(), &raw);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(raw, sqlite3_close);
    const auto add = [](void* all, int, char** columns, char**) {
      static_cast<std::multiset<std::string>*>(all)->insert(columns[0]);
      return 0;
    };
    ASSERT_EQ(sqlite3_exec(raw, "select sonst1 from bearbeitung", add, &numbers, nullptr), SQLITE_OK);
  }

 private:
  static void note(Operation& operation, const std::vector<std::string>& messages) {
    for (const std::string& message : messages) {
      const auto says = [&](const std::string& text) { return message.find(text) != std::string::npos; };
      operation.toldDone = operation.toldDone || says("erfolgreich");
      operation.toldNumber = operation.toldNumber || says(FailingGateway::newCardNumber(operation.number));
      operation.lastWord = message;
    }
  }

  bool record(std::size_t number) {
    dispatch::Object card(dispatch::classNamed("CFahrerkarte"), *component_);
    card.let("kartennr", FailingGateway::newCardNumber(number));
    std::array<dispatch::Value, 1> person = {std::string("4711")};
    return std::get<bool>(card.call("insert", person));
  }

  int tracedUnclear(const std::string& message) const {
    const std::string trace = installation_.trace();
    const std::string line = "Ausgang unklar: " + message + " ";
    int count = 0;
    for (auto at = trace.find(line); at != std::string::npos; at = trace.find(line, at + 1)) ++count;
    return count;
  }

  Installation installation_;
  Clerk clerk_;
  std::unique_ptr<platform::HttpLibrary> http_ = adapters::makeCurlHttp({"", 10, 1});
  std::unique_ptr<Component> component_;
};

/// Everything that is known of the operations once they are over.
struct Records {
  std::map<std::size_t, Seen> gateway;
  std::map<std::string, std::vector<BookEntry>> book;  ///< by mark
  std::multiset<std::string> cards;                    ///< that the host has recorded

  Records(FailingGateway& failing, const std::filesystem::path& bookFile) : gateway(failing.seen()) {
    const auto files = adapters::makeFiles();
    StandingClock clock;
    std::vector<BookEntry> entries;
    EXPECT_FALSE(OrderBook(*files, clock, bookFile.string()).read(entries));
    for (BookEntry& entry : entries) book[entry.mark].push_back(std::move(entry));
  }

  Seen seen(std::size_t number) const {
    const auto found = gateway.find(number);
    return found == gateway.end() ? Seen{} : found->second;
  }
};

/// What is wrong with the end of an operation; empty when nothing is.
std::string faultOf(const Operation& operation, const Records& records) {
  const Seen seen = records.seen(operation.number);
  if (seen.again) return "sent twice";
  if (operation.kind == Kind::passwordChange) return {};
  if (records.cards.count(FailingGateway::newCardNumber(operation.number)) != (operation.recorded ? 1U : 0U))
    return "the host's record is not what the host was told";
  if (operation.result == 1 && seen.taken == 0) return "told as done, but was not";
  if (operation.kind == Kind::inquiry) return {};

  const bool told = operation.toldDone;
  const auto entries = records.book.find("4711/" + std::to_string(operation.number));
  const bool kept = entries != records.book.end() && entries->second.size() == 1;
  if (told != (operation.result == 1)) return "the host was told something else than the clerk";
  if (!told && operation.lastWord.empty()) return "ended without a word";
  if (told && operation.kind == Kind::order && !operation.toldNumber) return "told with another card number";
  // A book that cannot be written stops the message, or stays open.
  if (!kept) return operation.disturbed && seen.taken == 0 ? "" : "not once in the order book";
  const kartix::Outcome outcome = entries->second.front().outcome;
  const bool unclear = isUnclear(outcome);
  if (unclear && operation.disturbed) return {};
  if (told != (outcome == kartix::Outcome::accepted))
    return "the order book says something else than the clerk was told";
  if (seen.refused && unclear) return "refused, and feared to be carried out";
  if (seen.taken == 1 && !told && !unclear) return "carried out, and lost";
  // One of the two may be what could not be written.
  if (operation.traced != (unclear ? 1 : 0) && !operation.disturbed) return "trace and order book differ";
  return {};
}

/// How many operations are played.
std::size_t wanted() {
  constexpr std::size_t within = 500;
  const char* const said = std::getenv("KARTIX_SOAK");
  return said ? std::stoul(said) : within;
}

/// Two fifths are orders, a few changes of the password.
Kind kindOf(std::size_t choice) {
  constexpr std::array<Kind, 5> kinds = {Kind::order, Kind::order, Kind::cancellation, Kind::notification,
                                         Kind::inquiry};
  return choice % 20 == 0 ? Kind::passwordChange : kinds[choice % kinds.size()];
}

/// Lets a call of every fifth operation fail, of those that write and read settings, database, order book and trace.
std::function<void()> failure(std::mt19937& random) {
  constexpr std::array<std::pair<calls::Kind, int>, 4> ways = {{{calls::Kind::write, ENOSPC},
                                                                {calls::Kind::flush, EIO},
                                                                {calls::Kind::rename, EACCES},
                                                                {calls::Kind::read, EIO}}};
  if (random() % 5 != 0) return [] {};
  const auto [kind, error] = ways[random() % ways.size()];
  constexpr int most = 30;  // an operation writes that often, flushes and renames less
  const long first =
      1 + static_cast<long>(random() % (kind == calls::Kind::write || kind == calls::Kind::read ? most : 4));
  return [kind = kind, error = error, first] { calls::failFrom(kind, first, 1, error); };
}

/// What the process holds.
struct Held {
  long kilobytes = 0;  ///< of memory
  long descriptors = 0;

  static Held now() {
    ::malloc_trim(0);
    std::ifstream memory("/proc/self/statm");
    long all = 0;
    long resident = 0;
    memory >> all >> resident;
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return {resident * (::sysconf(_SC_PAGESIZE) / 1024), std::distance(begin(entries), end(entries))};
  }
};

/// What this test notes of an operation stays below half a kilobyte; what the component would lose with one, a
/// document, a window or a picture, is larger. A kept connection more or less counts with both its ends.
void expectFlat(const Held& before, const Held& after, [[maybe_unused]] std::size_t operations) {
  constexpr long connections = 8;
  std::cout << "memory " << before.kilobytes << " KiB, later " << after.kilobytes << " KiB; descriptors "
            << before.descriptors << ", later " << after.descriptors << '\n';
  EXPECT_LE(after.descriptors, before.descriptors + 2 * connections);
#ifndef __SANITIZE_ADDRESS__  // which keeps what was freed
  EXPECT_LE(after.kilobytes, before.kilobytes + static_cast<long>(operations) / 2);
#endif
}

/// Both roads, each with an installation and an account of its own.
struct Workplaces {
  Workplaces(Json scenario, FailingGateway& gatewayOfBoth)
      : gateway(gatewayOfBoth), own(scenario), objects(onObjectRoad(scenario)) {}

  static Json onObjectRoad(Json scenario) {
    scenario["settings"]["ZKR.ZKRNeu"] = "1";
    scenario["settings"]["ZKR.ZEVISUserName"] = "KARTIX02";
    return scenario;
  }

  void carryOut(Operation& operation, const std::function<void()>& beginToFail) {
    const Road road = operation.number % 2 == 0 ? Road::own : Road::objects;
    gateway.expect(operation.number, operation.kind, road);
    (road == Road::own ? own : objects).carryOut(operation, beginToFail);
  }

  FailingGateway& gateway;
  Workstation own;
  Workstation objects;
};

TEST(Soak, NoMessageIsLostOrDoubledByAGatewayThatFails) {
  constexpr unsigned seed = 4711;
  constexpr std::size_t warm = 1000;
  FailingGateway gateway(seed);
  std::mt19937 random(seed);
  std::vector<Operation> operations(wanted() + 2);
  for (std::size_t i = 0; i < operations.size(); ++i) operations[i] = {i + 1, kindOf(random())};
  const TempDir shared;
  const std::filesystem::path book = shared / "book.txt";
  Json scenario = installed(operations, gateway.port());
  scenario["settings"]["ZKR.Bestellbuch"] = book.string();
  Workplaces workplaces(std::move(scenario), gateway);
  std::optional<Held> before;
  for (std::size_t i = 0; i + 2 < operations.size(); ++i) {
    workplaces.carryOut(operations[i], failure(random));
    if (i + 1 == warm) before = Held::now();
  }
  const Held after = Held::now();

  // Once all is well again, so is the next operation.
  gateway.recover();
  for (Operation* const last : {&operations.end()[-1], &operations.end()[-2]}) {
    last->kind = Kind::inquiry;
    workplaces.carryOut(*last, [] {});
    EXPECT_EQ(last->result, 1) << last->lastWord;
  }
  EXPECT_EQ(workplaces.own.storedPassword(), gateway.password("KARTIX01"));
  EXPECT_EQ(workplaces.objects.storedPassword(), gateway.password("KARTIX02"));

  Records records(gateway, book);
  workplaces.own.readRecorded(records.cards);
  workplaces.objects.readRecorded(records.cards);
  std::size_t done = 0;
  std::size_t unclear = 0;
  std::size_t disturbed = 0;
  for (const Operation& operation : operations) {
    if (operation.result == 1) ++done;
    unclear += operation.traced;
    if (operation.disturbed) ++disturbed;
    EXPECT_EQ(faultOf(operation, records), "") << messageOf(operation) << (operation.disturbed ? ", disturbed" : "")
                                               << ", the gateway: " << records.seen(operation.number).fault
                                               << ", the clerk was told: " << operation.lastWord;
  }
  std::cout << operations.size() << " operations, " << done << " done, " << unclear << " unclear, " << disturbed
            << " with calls that failed\n";
  for (const auto& [name, times] : gateway.taken()) {
    EXPECT_TRUE(times[0] > 0 && times[1] > 0) << "not on both roads: " << name;
  }
  EXPECT_GT(done, operations.size() / 3);
  EXPECT_GT(unclear, operations.size() / 10);
  EXPECT_GT(disturbed, operations.size() / 20);
  if (before) expectFlat(*before, after, operations.size() - warm);
}

}  // namespace
}  // namespace kartix::test
