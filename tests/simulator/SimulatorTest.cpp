#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

#include <array>
#include <csignal>
#include <optional>
#include <set>

#include "simulator/Accounts.h"
#include "simulator/Element.h"
#include "simulator/Messages.h"
#include "simulator/SamplePersons.h"
#include "simulator/Simulator.h"
#include "support/Certificates.h"
#include "support/TempDir.h"

namespace kartix::simulator {
namespace {

using test::cancellation;
using test::inquiry;
using test::notification;
using test::order;
using test::request;
using test::Values;
using testing::ElementsAre;
using testing::HasSubstr;

const std::string password(samplePassword);
const std::string lostCard = "DF00000041877301";
const std::string orderedCard = "DF00000058213900";

/// A connection may end while the client still sends, and the client's library leaves the signal to the program.
[[maybe_unused]] const auto brokenPipe = std::signal(SIGPIPE, SIG_IGN);

class MemoryStore final : public StateStore {
 public:
  std::optional<std::string> read() override { return text; }
  bool replace(std::string_view fresh) override {
    if (writable) text = fresh;
    return writable;
  }

  std::optional<std::string> text;
  bool writable = true;
};

/// A client that keeps cookies as the component does.
class Client {
 public:
  explicit Client(const Simulator& gateway) : http_("127.0.0.1", gateway.port()) {
    http_.set_keep_alive(true);
    http_.set_tcp_nodelay(true);
  }

  httplib::Result send(const std::string& body, const std::string& path = "/") {
    httplib::Request request;
    request.method = "POST";
    request.path = path;
    request.body = body;
    request.set_header("Content-Type", "text/xml");
    if (cookies.size() == 2) request.set_header("Cookie", cookies[0] + "; " + cookies[1]);
    status = 0;
    request.response_handler = [this](const httplib::Response& head) {
      status = head.status;
      return true;
    };
    return http_.send(request);
  }

  /// The answer's document; an element without name when there is none.
  Element ask(const std::string& body, const std::string& path = "/") {
    const auto result = send(body, path);
    if (!result || result->status != 200) return {};
    return parseXml(result->body).value_or(Element{});
  }

  /// Document element and return code of the answer.
  std::string code(const std::string& body) {
    const Element answer = ask(body);
    return answer.name + " " + answer.value("retc") + answer.value("returnCode");
  }

  /// Return code, and "in" when both cookies were set.
  std::string logIn(const std::string& user = "kartix", const std::string& pass = password,
                    const std::string& fresh = "-") {
    const auto result = send(test::login(user, pass, fresh), paths::login);
    if (!result) return "no answer";
    const std::size_t set = result->get_header_value_count("Set-Cookie");
    if (set > 0) cookies.clear();
    for (std::size_t i = 0; i < set; ++i) {
      const std::string cookie = result->get_header_value("Set-Cookie", i);
      cookies.push_back(cookie.substr(0, cookie.find(';')));
    }
    return parseXml(result->body).value_or(Element{}).value("RETC") + (set == 2 ? " in" : "");
  }

  std::vector<std::string> cookies;
  int status = 0;  ///< of the last answer, however much of its body came; 0 for none

 private:
  httplib::Client http_;
};

TEST(Simulator, AccountsAreAnsweredAsTheyStandAndANewPasswordHolds) {
  const std::vector<std::array<std::string, 4>> cases = {{"kartix", password, "-", "0 in"},
                                                         {"kartix", "falsch", "-", "3001"},
                                                         {"nobody", password, "-", "3001"},
                                                         {"kartix-500", password, "-", "500 in"},
                                                         {"kartix-3006", password, "-", "3006"},
                                                         {"kartix-1000", password, "-", "1000"},
                                                         {"kartix-3005", password, "-", "3005"},
                                                         {"kartix-3005", password, "kurz", "3007"},
                                                         {"kartix-3005", "falsch", "n&#228;chstes", "3001"},
                                                         {"kartix-3005", password, "n&#228;chstes", "300"},
                                                         {"kartix-3005", "n\xE4\x63hstes", "-", "0 in"},
                                                         {"kartix-3005", password, "-", "3001"}};
  Simulator gateway({});
  Client client(gateway);
  for (const auto& [user, pass, fresh, expected] : cases)
    EXPECT_EQ(client.logIn(user, pass, fresh), expected) << user;
}

TEST(Simulator, EveryRequestButTheLoginNeedsBothCookiesOfOneSession) {
  Simulator gateway({});
  Client client(gateway);
  ASSERT_EQ(client.logIn(), "0 in");
  const auto first = client.cookies;
  ASSERT_EQ(client.logIn(), "0 in");
  const auto second = client.cookies;
  EXPECT_THAT(second, ElementsAre(testing::StartsWith("kba.session="), testing::StartsWith("JServSessionIdroot=")));
  for (const auto& cookies : {std::vector<std::string>(), {first[0], second[1]}, {first[0], first[0]}}) {
    client.cookies = cookies;
    EXPECT_EQ(client.code(inquiry(lostCard)), "zkr-hinweis 3020");
    EXPECT_EQ(client.code(notification(lostCard, "10")), "zkr-mhinweis 3020");
    EXPECT_EQ(client.code(order("1/1")), "information 3000");
    EXPECT_EQ(client.code(cancellation(orderedCard)), "information 3000");
  }
  client.cookies = first;
  EXPECT_EQ(client.code(cancellation(orderedCard)), "information 0");
}

TEST(Simulator, InquiriesFindTheSamplePersons) {
  const Values weissgerber = {
      {"vname", "J\xF6rg Uwe"}, {"gnamb", ""}, {"name", "WEI\xDFgerber"}, {"dgebu", "19780314"}};
  const std::vector<std::tuple<std::string, std::string, std::size_t>> cases = {
      {inquiry(weissgerber), "zkr-trefferliste 0", 3},
      {request("licence", {{"fsnfk", "B072RRE2I55"}}), "zkr-trefferliste 0", 2},
      {inquiry({{"name", "&#272;or&#273;evi&#263;"}, {"dgebu", "00000000"}}), "zkr-auskunft 0", 1},
      {inquiry({{"name", "Heyde"}}), "zkr-anfrage 200", 0},
      {inquiry({{"name", "M\xFCller"}}), "zkr-anfrage 200", 57},
      {inquiry({{"vname", "J\xF6rg Uwe"}}), "zkr-hinweis 4001", 0}};
  Simulator gateway({});
  Client client(gateway);
  client.logIn();
  for (const auto& [request, code, hits] : cases) {
    const Element answer = client.ask(request, "http://zevis.example/zkr/anfrage?x=1");
    EXPECT_EQ(answer.name + " " + answer.value("retc"), code) << request;
    const Element* const list = answer.find("liste");
    const std::size_t records = list ? list->children.size() : answer.find("bestandsdaten") ? 1 : 0;
    EXPECT_EQ(records + std::stoul("0" + answer.value("anzt")), hits) << request;
  }
  const std::string bytes = client.send(inquiry("DF00000063550200"))->body;
  EXPECT_THAT(bytes, testing::StartsWith(R"(<?xml version="1.0" encoding="ISO-8859-1"?><zkr-auskunft>)"));
  EXPECT_THAT(bytes, HasSubstr("<name>&#272;or&#273;evi&#263;</name>"));
  EXPECT_THAT(bytes, HasSubstr("<stras>B\xFCrgerstr.</stras><hsnr>7</hsnr><hnz15>-9</hnz15>"));
}

TEST(Simulator, TheHostsCardNumbersAreKnownToTheRegister) {
  std::set<std::string_view> known = {""};
  for (const SampleRegisterCard& card : sampleRegisterCards()) known.insert(card.kgknr);
  for (const SampleCard& row : sampleCards()) EXPECT_TRUE(known.contains(row.kartennr)) << row.kartennr;
  for (const SampleCard& row : sampleCards()) EXPECT_TRUE(known.contains(row.kartennralt)) << row.kartennralt;
}

TEST(Simulator, ACardLivesThroughOrderReportAndCancellationAndOutlivesTheProcess) {
  MemoryStore store;
  std::string number;
  {
    Simulator gateway({.state = &store});
    Client client(gateway);
    client.logIn();
    number = client.ask(order("4713/1"), paths::order).value("cardNumber");
    EXPECT_THAT(number, testing::MatchesRegex("DF[0-9]{14}"));
    const Element card = client.ask(inquiry(number));
    EXPECT_EQ(card.value("scode") + card.value("name") + card.value("dgebu"),
              "01\u0110or\u0111evi\u0107"
              "19700203");
    EXPECT_EQ(client.code(order("4713/1")), "information 0");
    EXPECT_EQ(client.code(cancellation(lostCard)), "information 4003");
    EXPECT_EQ(client.code(cancellation("DF1")), "information 4002");
    EXPECT_EQ(client.code(cancellation(number)), "information 0");
    EXPECT_EQ(client.code(cancellation(number)), "information 4003");
    EXPECT_EQ(client.code(notification(number, "10")), "zkr-mhinweis 4003");
    EXPECT_EQ(client.code(notification("DF1", "10")), "zkr-mhinweis 4002");
    EXPECT_THAT(client.send(notification(lostCard, "7"))->body, HasSubstr("<fehlerelem><fhinw>M013</fhinw>"));
    EXPECT_EQ(client.code(notification(lostCard, "10")), "zkr-mhinweis 0");
    EXPECT_EQ(client.logIn("kartix", password, "anderes1"), "300");
  }
  Simulator gateway({.state = &store});
  Client client(gateway);
  EXPECT_EQ(client.logIn("kartix", "anderes1"), "0 in");
  EXPECT_EQ(client.ask(inquiry(number)).value("scode"), "101");
  const Element lost = client.ask(inquiry(lostCard));
  EXPECT_EQ(lost.value("scode") + lost.value("dhwkk") + lost.value("stime"), "1020140304101500");
  EXPECT_EQ(lost.value("stext"), "im Zug verloren");
  const auto orders = gateway.orders();
  ASSERT_EQ(orders.size(), 2);
  EXPECT_EQ(orders[0], (Order{"4713/1", number, orders[0].date, true}));
  EXPECT_EQ(orders[1].externalAdministrationMark, "4713/1");
  EXPECT_FALSE(orders[1].cancelled || orders[1].cardNumber == number);
}

TEST(Simulator, AFaultyOrderIsRefusedWithEveryFault) {
  const Values faults = {{"photograph", ""},       {"signature", "/9j/2wB=AA=="},         {"cardHolderSurname", "-"},
                         {"cardHolderGender", ""}, {"cardHolderBirthDate", "22.11.1985"}, {"priority", "s"}};
  Simulator gateway({});
  Client client(gateway);
  client.logIn();
  for (const auto& fault : faults) {
    const Element answer = client.ask(order("1/1", {fault}));
    EXPECT_EQ(answer.value("returnCode"), "4001") << fault.first;
    ASSERT_TRUE(answer.find("errorList")) << fault.first;
    EXPECT_EQ(answer.find("errorList")->children.size(), 1) << fault.first;
  }
  EXPECT_EQ(client.ask(order("1/1", faults)).find("errorList")->children.size(), faults.size());
  EXPECT_TRUE(gateway.orders().empty());
}

TEST(Simulator, AStateThatCannotBeKeptAcceptsNothing) {
  MemoryStore store;
  Simulator gateway({.state = &store});
  Client client(gateway);
  client.logIn();
  store.writable = false;
  EXPECT_EQ(client.code(order("1/1")), "information 9001");
  EXPECT_EQ(client.code(notification(lostCard, "10")), "zkr-mhinweis 9001");
  EXPECT_TRUE(gateway.orders().empty());
  EXPECT_EQ(client.ask(inquiry(lostCard)).value("scode"), "03");
  EXPECT_THROW(Simulator({.state = &store}), BadFile);
  store.writable = true;
  for (const char* const content : {"", "[]", R"({"version":1})", R"({"version":2})"}) {
    store.text = content;
    EXPECT_THROW(Simulator({.state = &store}), BadFile) << content;
    EXPECT_EQ(store.text, content);
  }
}

TEST(Simulator, ScenariosOfRegisterPersonaliserAndLogin) {
  using Three = std::array<std::string, 3>;
  const Three notLoggedIn = {"zkr-hinweis 3020", "information 3000", "zkr-mhinweis 3020"};
  const std::vector<std::pair<const char*, Three>> cases = {
      {"none", {"zkr-auskunft 0", "information 0", "zkr-mhinweis 0"}},
      {"not-logged-in-once", notLoggedIn},
      {"not-logged-in", notLoggedIn},
      {"refused", {"zkr-hinweis 4999", "information 4999", "zkr-mhinweis 4999"}},
      {"refused-with-list", {"zkr-hinweis 4999", "information 4999", "zkr-mitteilung 4999"}},
      {"too-many-hits", {"zkr-anfrage 200", "information 0", "zkr-mhinweis 0"}},
      {"no-hit", {"zkr-anfrage 200", "information 0", "zkr-mhinweis 0"}}};
  Simulator gateway({});
  Client client(gateway);
  for (const auto& [name, codes] : cases) {
    client.logIn();
    gateway.setScenario(findScenario(name)->scenario);
    EXPECT_EQ(
        (Three{client.code(inquiry(lostCard)), client.code(order("1/1")), client.code(notification(lostCard, "10"))}),
        codes)
        << name;
    client.logIn();
    EXPECT_EQ(client.code(order("1/1")) == "information 3000", name == std::string("not-logged-in")) << name;
  }
  gateway.setScenario(Scenario::refusedWithList);
  EXPECT_EQ(client.ask(order("1/1")).find("errorList")->children.size(), 2);
  EXPECT_EQ(client.ask(notification(lostCard, "10")).find("fehler")->children.size(), 2);
  gateway.setScenario(Scenario::passwordExpired);
  EXPECT_EQ(client.logIn(), "3005");
  EXPECT_EQ(client.logIn("kartix", password, "anderes1"), "300");
  EXPECT_EQ(client.logIn("kartix", "anderes1"), "0 in");
  gateway.setScenario(Scenario::loginRefused);
  EXPECT_EQ(client.logIn("kartix", "anderes1"), "1000");
}

TEST(Simulator, ScenariosOfTheWire) {
  struct Case {
    Scenario scenario;
    int status;          ///< 0 for no answer at all
    std::size_t size;    ///< smallest body
    std::size_t orders;  ///< that stand there afterwards
  };
  const std::vector<Case> cases = {
      {Scenario::connectionClosed, 0, 0, 0}, {Scenario::orderAcceptedThenClosed, 0, 0, 1},
      {Scenario::halfAnswer, 200, 0, 1},     {Scenario::notXml, 200, 10, 0},
      {Scenario::http500, 500, 1, 0},        {Scenario::oversizedAnswer, 200, 16777217, 0},
      {Scenario::emptyAnswer, 200, 0, 0},    {Scenario::unknownAnswer, 200, 10, 0},
      {Scenario::slowAnswer, 200, 10, 1}};
  constexpr std::chrono::milliseconds slowness(200);
  for (const Case& c : cases) {
    Simulator gateway({.slowness = slowness});
    Client client(gateway);
    ASSERT_EQ(client.logIn(), "0 in");
    gateway.setScenario(c.scenario);
    const auto begin = std::chrono::steady_clock::now();
    const auto result = client.send(order("4711/1"), paths::order);
    const bool slow = std::chrono::steady_clock::now() - begin >= slowness;
    EXPECT_EQ(client.status, c.status) << int(c.scenario);
    EXPECT_EQ(bool(result), c.status != 0 && c.scenario != Scenario::halfAnswer) << int(c.scenario);
    EXPECT_GE(result ? result->body.size() : 0, c.size) << int(c.scenario);
    EXPECT_TRUE(slow || c.scenario != Scenario::slowAnswer);
    EXPECT_EQ(gateway.orders().size(), c.orders) << int(c.scenario);
    EXPECT_EQ(gateway.exchanges().size(), 2) << int(c.scenario);
  }
}

TEST(Simulator, HostileRequestsAreRefusedAndTheNextIsAnswered) {
  std::string deep;
  for (int i = 0; i < 100'000; ++i) deep += "<a>";
  const std::vector<std::string> refused = {
      "",
      "<a",
      "<a/>",
      std::string("\xFF\xFE\0\0", 4),
      deep,
      R"(<!DOCTYPE ZEVIS-LOGIN [<!ENTITY a "aaa"><!ENTITY b "&a;&a;">]><ZEVIS-LOGIN><KENN>&b;</KENN></ZEVIS-LOGIN>)",
      R"(<!DOCTYPE a [<!ENTITY f SYSTEM "file:///etc/passwd">]><ZEVIS-LOGIN>&f;</ZEVIS-LOGIN>)",
      R"(<!DOCTYPE a SYSTEM "x"><ZEVIS-LOGIN><KENN>&f;</KENN></ZEVIS-LOGIN>)"};
  Simulator gateway({});
  for (const std::string& body : refused) {
    const auto result = Client(gateway).send(body);
    EXPECT_EQ(result ? result->status : 0, 400) << body.substr(0, 60);
  }
  const auto tooLarge = Client(gateway).send(std::string((64 << 20) + 1, ' '));
  EXPECT_EQ(tooLarge ? tooLarge->status : 413, 413);
  httplib::Client wild("127.0.0.1", gateway.port());
  // The client may miss the answer: what it has sent beyond the limit resets the connection.
  const auto longHead = wild.Post("/" + std::string(7000, '%'), {{"X", std::string(100'000, 'x')}}, "a", "text/xml");
  EXPECT_EQ(longHead ? longHead->status : 400, 400);
  EXPECT_EQ(wild.Post("/%0A%00", "x", "multipart/form-data; boundary=x")->status, 400);
  EXPECT_EQ(Client(gateway).logIn(), "0 in");
}

TEST(Simulator, TlsDemandsTheClientsCertificate) {
  const test::TempDir directory;
  const test::TestAuthority authority(directory.path());
  const auto server = authority.issue("server");
  const auto client = authority.issue("client");
  Simulator gateway({.tls = TlsFiles{server.certificate, server.key, authority.caFile()}});
  httplib::SSLClient known("localhost", gateway.port(), client.certificate, client.key);
  httplib::SSLClient stranger("localhost", gateway.port());
  for (auto* const http : {&known, &stranger}) http->set_ca_cert_path(authority.caFile());
  const auto answer = known.Post(paths::login, test::login("kartix", password), "text/xml");
  ASSERT_TRUE(answer);
  EXPECT_THAT(answer->body, HasSubstr("<RETC>0</RETC>"));
  EXPECT_FALSE(stranger.Post(paths::login, test::login("kartix", password), "text/xml"));
  EXPECT_EQ(gateway.exchanges().size(), 1);
  EXPECT_THROW(Simulator({.tls = TlsFiles{server.certificate, client.key, ""}}), BadFile);
  EXPECT_THROW(Simulator({.tls = TlsFiles{(directory / "none").string(), server.key, ""}}), BadFile);
}

}  // namespace
}  // namespace kartix::simulator
