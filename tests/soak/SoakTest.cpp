#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>
#include <sstream>

#include "adapters/curl/Curl.h"
#include "adapters/files/Files.h"
#include "component/Component.h"
#include "component/Dispatch.h"
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
  std::vector<std::string> messages = {};

  bool told(std::string_view text) const {
    return std::any_of(messages.begin(), messages.end(),
                       [&](const std::string& message) { return message.find(text) != std::string::npos; });
  }
  bool toldDone() const { return told("erfolgreich"); }
};

struct KindNames {
  const char* message;
  const char* operation;
};

/// In the order of `Kind`.
constexpr std::array<KindNames, 4> kindNames = {{{"Bestellung", "FahrerKartenBestellung"},
                                                 {"Storno", "KartenStorno"},
                                                 {"Mitteilung", "KartenMitteilung"},
                                                 {"Anfrage", "ZKRAnfrage"}}};

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
    kartix_ = std::make_unique<dispatch::Object>(dispatch::classNamed("Kartix"), *component_);
  }

  void carryOut(Operation& operation) {
    const bool inquiry = operation.kind == Kind::inquiry;
    clerk_.takeMessages();
    if (!beginSession(*kartix_, "Meier", inquiry ? inquired : "4711")) return;
    operation.result =
        test::carryOut(*kartix_, namesOf(operation.kind).operation, inquiry ? "1" : std::to_string(operation.number));
    operation.messages = clerk_.takeMessages();
  }

  std::string trace() const { return installation_.trace(); }

 private:
  Installation installation_;
  Clerk clerk_;
  std::unique_ptr<platform::HttpLibrary> http_ = adapters::makeCurlHttp({"", 10, 2});
  std::unique_ptr<Component> component_;
  std::unique_ptr<dispatch::Object> kartix_;
};

/// Everything that is known of the operations once they are over.
struct Records {
  std::map<std::size_t, Seen> gateway;
  std::map<std::string, std::vector<BookEntry>> book;  ///< by mark
  std::string trace;

  Records(FailingGateway& failing, const std::filesystem::path& bookFile, std::string traced)
      : gateway(failing.seen()), trace(std::move(traced)) {
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

  std::size_t tracedUnclear(const std::string& message) const {
    const std::string line = "Ausgang unklar: " + message + " ";
    std::size_t count = 0;
    for (auto at = trace.find(line); at != std::string::npos; at = trace.find(line, at + 1)) ++count;
    return count;
  }
};

/// What is wrong with the end of an operation; empty when nothing is.
std::string faultOf(const Operation& operation, const Records& records) {
  const std::string mark = "4711/" + std::to_string(operation.number);
  const Seen seen = records.seen(operation.number);
  if (seen.again) return "sent twice";
  if (operation.result == 1 && seen.taken == 0) return "told as done, but was not";
  if (operation.kind == Kind::inquiry) return {};

  const std::size_t traced = records.tracedUnclear(messageOf(operation));
  const auto entries = records.book.find(mark);
  if (entries == records.book.end() || entries->second.size() != 1) return "not once in the order book";
  const kartix::Outcome outcome = entries->second.front().outcome;
  const bool told = operation.toldDone();

  if (told != (operation.result == 1)) return "the host was told something else than the clerk";
  if (!told && operation.messages.empty()) return "ended without a word";
  if (told != (outcome == kartix::Outcome::accepted))
    return "the order book says something else than the clerk was told";
  if (seen.refused && isUnclear(outcome)) return "refused, and feared to be carried out";
  if (seen.taken == 1 && !told && (traced != 1 || !isUnclear(outcome))) return "carried out, and lost";
  if (traced != (isUnclear(outcome) ? 1U : 0U)) return "trace and order book differ";
  if (told && operation.kind == Kind::order && !operation.told(FailingGateway::newCardNumber(operation.number)))
    return "told with another card number";
  return {};
}

/// How many operations are played.
std::size_t wanted() {
  constexpr std::size_t within = 120;
  const char* const said = std::getenv("KARTIX_SOAK");
  return said ? std::stoul(said) : within;
}

/// A fifth are inquiries, two fifths orders.
Kind kindOf(std::size_t choice) {
  constexpr std::array<Kind, 5> kinds = {Kind::order, Kind::order, Kind::cancellation, Kind::notification,
                                         Kind::inquiry};
  return kinds[choice % kinds.size()];
}

TEST(Soak, NoMessageIsLostOrDoubledByAGatewayThatFails) {
  constexpr unsigned seed = 4711;
  FailingGateway gateway(seed);
  std::mt19937 random(seed);
  std::vector<Operation> operations(wanted());
  for (std::size_t i = 0; i < operations.size(); ++i) operations[i] = {i + 1, kindOf(random())};
  const TempDir shared;
  const std::filesystem::path book = shared / "book.txt";
  Json scenario = installed(operations, gateway.port());
  scenario["settings"]["ZKR.Bestellbuch"] = book.string();
  std::string trace;
  {
    Workstation ownRoad(scenario);
    scenario["settings"]["ZKR.ZKRNeu"] = "1";
    Workstation objectRoad(scenario);
    for (Operation& operation : operations) {
      const Road road = operation.number % 2 == 0 ? Road::own : Road::objects;
      gateway.expect(operation.number, operation.kind, road);
      (road == Road::own ? ownRoad : objectRoad).carryOut(operation);
    }
    trace = ownRoad.trace() + objectRoad.trace();
  }

  const Records records(gateway, book, trace);
  std::size_t done = 0;
  std::size_t unclear = 0;
  for (const Operation& operation : operations) {
    if (operation.result == 1) ++done;
    unclear += records.tracedUnclear(messageOf(operation));
    EXPECT_EQ(faultOf(operation, records), "")
        << messageOf(operation) << ", the gateway: " << records.seen(operation.number).fault
        << ", the clerk was told: " << (operation.messages.empty() ? "nothing" : operation.messages.back());
  }
  std::cout << operations.size() << " operations, " << done << " done, " << unclear << " unclear\n";
  for (const auto& [name, times] : gateway.taken()) {
    EXPECT_TRUE(times[0] > 0 && times[1] > 0) << "not on both roads: " << name;
  }
  EXPECT_GT(done, operations.size() / 3);
  EXPECT_GT(unclear, operations.size() / 10);
}

}  // namespace
}  // namespace kartix::test
