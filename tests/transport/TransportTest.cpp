#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "adapters/curl/Curl.h"
#include "support/Environment.h"
#include "support/LoopbackServer.h"
#include "support/TempDir.h"

namespace kartix::adapters {
namespace {

namespace error = platform::http_error;
using namespace std::string_literals;
using test::answer;
using test::ConnectProxy;
using test::LoopbackServer;
using test::PemFiles;
using test::Reply;
using Then = Reply::Then;

/// One exchange as the component sets it up.
struct Exchange {
  std::string port;
  std::string host = "127.0.0.1";
  bool tls = false;
  PemFiles client = {};
  std::string phrase = {};
  std::optional<std::string> proxy = {};
  std::string body = "<a/>";
};

class Transport : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    // Nothing of this may have an effect.
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy"}) test::setVariable(name, "http://127.0.0.1:9");
    test::setVariable("no_proxy", "");
  }

  std::unique_ptr<platform::HttpRequest> request(const Exchange& exchange) {
    auto made = library->TESSELHTTPCreate();
    EXPECT_EQ(made->TESSELHTTPsetServer(exchange.host, exchange.port), 0);
    EXPECT_EQ(made->TESSELHTTPsetMethod("POST"), 12);
    made->TESSELHTTPsetContentType("text/xml");
    EXPECT_EQ(made->TESSELHTTPsetPath("/zkr"), 0);
    EXPECT_EQ(made->TESSELHTTPsetBody(exchange.body), 0);
    if (exchange.tls) made->TESSELHTTPsetHttpS();
    made->TESSELHTTPsetPEM(exchange.client.certificate, exchange.client.key, exchange.phrase);
    if (exchange.proxy) made->TESSELHTTPsetSecureProxy(*exchange.proxy);
    return made;
  }
  std::int32_t send(const Exchange& exchange) { return request(exchange)->TESSELHTTPsend(); }

  void loseNoTime() { library = makeCurlHttp({authority.caFile(), 2, 1}); }

  test::TempDir directory;
  test::TestAuthority authority{directory.path()};
  PemFiles serverFiles = authority.issue("server");
  PemFiles client = authority.issue("client");
  std::unique_ptr<platform::HttpLibrary> library = makeCurlHttp({authority.caFile()});
};

TEST_F(Transport, NothingButWhatWasSetGoesOverTheWireAndTheAnswerComesBackWhole) {
  const std::string interim = "HTTP/1.1 103 Early\r\nSet-Cookie: c=zu frueh\r\n\r\n";
  LoopbackServer server({{interim + answer("<b>\xE4</b>", "503 St\xF6rung im Netz",
                                           "set-cookie: kba.session=1\r\nSet-Cookie: a=b=c; Path=/; Secure\r\n"
                                           "Set-Cookie: kba.session=2\r\nLocation: /anderswo\r\n")}});
  const auto http = request({server.port()});
  EXPECT_NE(http->TESSELHTTPsetPath("/a\r\nHost: b"), 0);
  EXPECT_EQ(http->TESSELHTTPsetPath("http://zevis.example/zkr?a= b"), 0);
  http->TESSELHTTPaddCookie("alt", "x");
  http->TESSELHTTPclearCookies();
  http->TESSELHTTPaddCookie("kba.session", "1|2");
  http->TESSELHTTPaddCookie("JServSessionIdroot", "y");
  http->TESSELHTTPaddCookie("schlecht", "z\r\nX: 1");

  EXPECT_EQ(http->TESSELHTTPsend(), 503);
  EXPECT_EQ(http->TESSELHTTPgetResponseDesc(1000), "Störung im Netz");
  EXPECT_EQ(http->TESSELHTTPgetResponseDesc(3), "St");
  EXPECT_EQ(http->TESSELHTTPgetResponseBody(), "<b>\xE4</b>");
  EXPECT_EQ(http->TESSELHTTPgetSetCookie("kba.session"), "2");
  EXPECT_EQ(http->TESSELHTTPgetSetCookie("a"), "b=c");
  EXPECT_EQ(http->TESSELHTTPgetSetCookie("c"), "");
  EXPECT_TRUE(http->requestSentCompletely());
  ASSERT_EQ(server.requests().size(), 1U);
  EXPECT_EQ(server.requests()[0].head,
            "POST http://zevis.example/zkr?a= b HTTP/1.1\r\nHost: 127.0.0.1:" + server.port() +
                "\r\nCookie: kba.session=1|2; JServSessionIdroot=y\r\n"
                "Content-Type: text/xml\r\nContent-Length: 4\r\n\r\n");
  EXPECT_EQ(server.requests()[0].body, "<a/>");
}

TEST_F(Transport, BrokenAnswersHaveTheirErrors) {
  const std::string whole = answer(std::string(100, 'x'));
  const std::string large(std::size_t{17} * 1024 * 1024, 'x');
  const std::string start = "HTTP/1.1 200 OK\r\n";
  const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n";
  const std::string chunked = start + "Transfer-Encoding: chunked\r\n\r\n";
  std::vector<std::pair<Reply, std::int32_t>> cases = {
      {{start, Then::reset}, error::answerBrokenOff},
      {{"", Then::hang}, error::timedOut},
      {{whole.substr(0, 80), Then::hang}, error::timedOut},
      {{start + "\r\n" + large, Then::close}, error::answerTooLarge},
      {{start + "X: " + std::string(50000, 'x') + "\r\n" + "Y: " + std::string(60000, 'y') + "\r\n" +
            "Z: " + std::string(90000, 'z') + "\r\n" + "A: " + std::string(90000, 'a') + "\r\n\r\n",
        Then::close},
       error::answerTooLarge}};
  std::vector<std::string> broken = {
      // Ended too early, and then the connection is.
      "HTTP/1.1 200 OK", start, start + "Content-Length: 0\r\n", interim, interim + start, chunked + "5\r\nab",
      chunked + "2\r\nab\r\n0\r\n",
      // No HTTP, or none that the library reads.
      start + "X: " + std::string(150000, 'x') + "\r\n\r\n", start + "kein Feld\r\n\r\n", "<zkr-auskunft/>",
      "\r\n\r\n", "HTTP/2 200\r\nContent-Length: 0\r\n\r\n",
      // Sizes that contradict each other.
      answer("ab", "200 OK", "Content-Length: 1\r\n"), start + "Content-Length: x\r\n\r\n",
      start + "Content-Length: -1\r\n\r\n", chunked + "zz\r\n", chunked + "2\r\nabcd\r\n0\r\n\r\n",
      start + "Transfer-Encoding: unbekannt\r\n\r\nab"};
  for (const std::string& status : {"000 OK"s, "042 OK"s, "20 OK"s, "2000 OK"s, "2OO OK"s, "101 Switching Protocols"s,
                                    "200 O\x01K"s, "200 O\rK"s, "500 O\x7FK"s, "500 \xC2\x9B"s, "200 O\0K"s})
    broken.push_back(answer("", status));
  for (const std::string& bytes : broken) cases.push_back({{bytes, Then::close}, error::answerBrokenOff});
  loseNoTime();
  for (const auto& [reply, expected] : cases) {
    LoopbackServer server({reply});
    const auto http = request({server.port()});
    EXPECT_EQ(http->TESSELHTTPsend(), expected) << reply.bytes.substr(0, 100);
    EXPECT_TRUE(http->requestSentCompletely());
    EXPECT_EQ(server.requests().size(), 1U);
  }
}

TEST_F(Transport, UnusualAnswersAreStillAnswers) {
  const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n0\r\n";
  for (const std::string& bytes :
       {std::string("HTTP/1.0 200 OK\r\n\r\nab"), std::string("HTTP/1.1 200\r\nContent-Length: 2\r\n\r\nab"),
        std::string("HTTP/1.1 200 \nContent-Length: 2\n\nab"), chunked + "HTTP/1.1: 500 X\r\nSet-Cookie: c=1\r\n\r\n",
        answer("ab") + answer("", "500 X"), answer("ab", "200 OK", "Content-Length: 2\r\n")}) {
    LoopbackServer server({{bytes, Then::close}, {answer("")}});
    const auto http = request({server.port()});
    EXPECT_EQ(http->TESSELHTTPsend(), 200) << bytes;
    EXPECT_EQ(http->TESSELHTTPgetResponseBody(), "ab") << bytes;
    EXPECT_EQ(http->TESSELHTTPgetSetCookie("c"), "") << bytes;
    EXPECT_EQ(send({server.port()}), 200) << "nothing of the first answer is left: " << bytes;
  }
}

TEST_F(Transport, LongReasonIsCutOnceBetweenCharacters) {
  std::string reason(std::size_t{95} * 1024, 'x');
  for (std::size_t i = 0; i < reason.size(); i += 2) reason.replace(i, 2, "ä");
  LoopbackServer server({{answer("", "500 " + reason)}});
  const auto http = request({server.port()});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(http->TESSELHTTPsend(), 500);
  EXPECT_EQ(http->TESSELHTTPgetResponseDesc(1001), reason.substr(0, 1000));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
}

TEST_F(Transport, ServerThatCannotBeReached) {
  const std::string unused = test::Listener().port();
  EXPECT_EQ(send({unused}), error::connectionRefused);
  EXPECT_EQ(send({.port = unused, .host = "kein-server.invalid"}), error::nameNotFound);
  EXPECT_FALSE(request({unused})->requestSentCompletely());
  LoopbackServer mute({{"", Then::hang}});
  loseNoTime();
  EXPECT_EQ(send({.port = mute.port(), .tls = true}), error::timedOut);
  for (const std::string& place : {":80"s, "a b:80"s, "a/b:80"s, "u@a:80"s, "a:"s, "a:0"s, "a:65536"s, "a:x"s}) {
    const auto colon = place.find(':');
    const auto made = library->TESSELHTTPCreate();
    EXPECT_NE(made->TESSELHTTPsetServer(place.substr(0, colon), place.substr(colon + 1)), 0) << place;
  }
}

TEST_F(Transport, TlsCertificatesAreCheckedOnBothSides) {
  const PemFiles locked = authority.issue("locked", {.phrase = "geheim"});
  const test::TempDir elsewhere;
  const PemFiles foreign = test::TestAuthority(elsewhere.path()).issue("foreign");
  const PemFiles expired = authority.issue("expired", {.validDays = -1});
  const std::string noKey = (directory / "fehlt.key").string();
  struct Case {
    const char* what;
    PemFiles server;
    PemFiles client;
    std::string phrase;
    std::int32_t expected;
    bool tls12 = false;
  };
  const std::vector<Case> cases = {
      {"good, TLS 1.2", serverFiles, client, "", 200, true},
      {"server of another authority", foreign, client, "", error::tlsFailed},
      {"client without certificate, TLS 1.2", serverFiles, {}, "", error::clientCertificateUnusable, true},
      {"client expired", serverFiles, expired, "", error::clientCertificateUnusable},
      {"client of another authority", serverFiles, foreign, "", error::clientCertificateUnusable, true},
      {"no key", serverFiles, {client.certificate, noKey}, "", error::clientCertificateUnusable},
      {"no certificate file", serverFiles, {noKey, client.key}, "", error::clientCertificateUnusable},
      {"wrong phrase", serverFiles, locked, "falsch", error::clientCertificateUnusable},
      {"no phrase", serverFiles, locked, "", error::clientCertificateUnusable}};
  for (const Case& one : cases) {
    LoopbackServer server({{answer("")}}, test::TlsWishes{one.server, authority.caFile(), one.tls12});
    const Exchange exchange{.port = server.port(), .tls = true, .client = one.client, .phrase = one.phrase};
    EXPECT_EQ(send(exchange), one.expected) << one.what;
    EXPECT_EQ(server.requests().size(), one.expected > 0 ? 1U : 0U) << one.what;
  }
}

TEST_F(Transport, SecureProxyTunnels) {
  test::setVariable("no_proxy", "*");  // must not open a way past the proxy
  LoopbackServer server({{answer("")}}, test::TlsWishes{serverFiles, authority.caFile()});
  const ConnectProxy proxy;
  const ConnectProxy refusing("407 Proxy Authentication Required");
  Exchange exchange{.port = server.port(), .tls = true, .client = client, .proxy = proxy.address()};
  EXPECT_EQ(send(exchange), 200);
  EXPECT_EQ(send(exchange), 200);
  const std::string target = "127.0.0.1:" + server.port();
  EXPECT_THAT(proxy.requests(),
              ::testing::ElementsAre("CONNECT " + target + " HTTP/1.1\r\nHost: " + target + "\r\n\r\n"));

  LoopbackServer mute({{"", Then::hang}});
  loseNoTime();
  const std::string unused = "127.0.0.1:" + test::Listener().port();
  for (const std::string& address :
       {refusing.address(), unused, "127.0.0.1:" + mute.port(), std::string("kein-proxy.invalid:8080"),
        std::string("127.0.0.1"), std::string()}) {
    exchange.proxy = address;
    EXPECT_EQ(send(exchange), error::secureProxyNotReachable) << address;
  }
  EXPECT_EQ(server.requests().size(), 2U);
  test::setVariable("no_proxy", "");
}

TEST_F(Transport, ConnectionsAreKeptForTheSameClientOnly) {
  LoopbackServer server({{answer("")}}, test::TlsWishes{serverFiles, authority.caFile()});
  Exchange exchange{.port = server.port(), .tls = true, .client = client};
  for (int i = 0; i < 50; ++i) EXPECT_EQ(send(exchange), 200);
  EXPECT_EQ(server.connections(), 1);
  const auto fresh = request(exchange);
  fresh->useFreshConnection();
  EXPECT_EQ(fresh->TESSELHTTPsend(), 200);
  EXPECT_EQ(server.connections(), 2);
  exchange.client.key = serverFiles.key;
  EXPECT_EQ(send(exchange), error::clientCertificateUnusable);
}

TEST_F(Transport, ConnectionsAreKeptAsLongAsTheServerSays) {
  for (const auto& [said, connections] :
       std::vector<std::pair<std::string, int>>{{"Connection: x, keep-alive", 1},
                                                {"Keep-Alive: timeout=30, max=5", 1},
                                                {"Keep-Alive: timeout=1", 2},
                                                {"Keep-Alive: timeout=30, max=0", 2},
                                                {"Connection: close", 2}}) {
    LoopbackServer server({{answer("", "200 OK", said + "\r\n")}});
    for (int i = 0; i < 2; ++i) EXPECT_EQ(send({.port = server.port()}), 200);
    EXPECT_EQ(server.connections(), connections) << said;
  }
}

TEST_F(Transport, RequestIsNeverSentTwice) {
  for (const Then end : {Then::close, Then::reset}) {
    for (const bool tls : {false, true}) {
      LoopbackServer server({{answer("")}, {"", end}, {answer("")}},
                            tls ? std::optional(test::TlsWishes{serverFiles, ""}) : std::nullopt);
      EXPECT_EQ(send({.port = server.port(), .tls = tls}), 200);
      const auto second = request({.port = server.port(), .tls = tls, .body = "<order/>"});
      EXPECT_EQ(second->TESSELHTTPsend(), error::answerBrokenOff);
      EXPECT_TRUE(second->requestSentCompletely());
      ASSERT_EQ(server.requests().size(), 2U);
      EXPECT_EQ(server.requests()[1].connection, 0) << "the fault needs a kept connection";
      EXPECT_EQ(second->TESSELHTTPsend(), 200) << "when the component asks for it";
      EXPECT_EQ(send({.port = server.port(), .tls = tls}), 200);
      EXPECT_NE(server.requests()[3].connection, server.requests()[2].connection) << "none is trusted any more";
    }
  }
}

/// How a server ends a connection after an answer.
struct Ending {
  const char* name;
  Then then;
  int milliseconds = 0;
  bool tls = false;
  std::string headers = {};
};

class ServerThatEndsConnections : public Transport, public ::testing::WithParamInterface<Ending> {};

TEST_P(ServerThatEndsConnections, LosesNoRequest) {
  constexpr int runs = 40;
  const Ending& ending = GetParam();
  LoopbackServer server(
      {{answer("", "200 OK", ending.headers), ending.then, std::chrono::milliseconds(ending.milliseconds)}},
      ending.tls ? std::optional(test::TlsWishes{serverFiles, ""}) : std::nullopt);
  for (int run = 0; run < runs; ++run) {
    library = makeCurlHttp({authority.caFile()});  // knows nothing of the server
    for (int i = 0; i < 2; ++i) EXPECT_EQ(send({.port = server.port(), .tls = ending.tls}), 200) << run;
  }
  EXPECT_EQ(server.connections(), 2 * runs);
}

INSTANTIATE_TEST_SUITE_P(Endings, ServerThatEndsConnections,
                         ::testing::Values(Ending{"AtOnce", Then::close}, Ending{"Later", Then::close, 2},
                                           Ending{"LaterUnderTls", Then::drop, 2, true},
                                           Ending{"LaterWithTlsFarewell", Then::close, 2, true},
                                           Ending{"Announced", Then::close, 0, false, "Connection: close\r\n"},
                                           Ending{"Reset", Then::reset}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(Transport, ServerThatHasEndedOneConnectionIsTrustedWithNone) {
  // The first connection ends while the component is busy with something else; all others would be kept.
  LoopbackServer server({{answer(""), Then::close}, {answer("", "200 OK", "Keep-Alive: timeout=30\r\n")}});
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(send({.port = server.port()}), 200);
    if (i == 0) std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_EQ(server.connections(), 4);
}

TEST_F(Transport, RequestThatWasCutOffWasNotSentCompletely) {
  for (const bool tls : {false, true}) {
    LoopbackServer server(
        [](const auto&) {
          return Reply{"", Then::reset};
        },
        tls ? std::optional(test::TlsWishes{serverFiles, ""}) : std::nullopt, [](const auto&) { return true; });
    const auto http =
        request({.port = server.port(), .tls = tls, .body = std::string(std::size_t{16} * 1024 * 1024, 'x')});
    EXPECT_EQ(http->TESSELHTTPsend(), error::answerBrokenOff);
    EXPECT_FALSE(http->requestSentCompletely());
    EXPECT_EQ(server.requests().size(), 1U);
  }
}

TEST_F(Transport, SuccessIsNoneBeforeTheRequestHasGoneOut) {
  for (const auto& [status, expected] :
       std::vector<std::pair<std::string, std::int32_t>>{{"200 OK", error::answerBrokenOff}, {"413 Zu gross", 413}}) {
    LoopbackServer server(
        [status = status](const auto&) {
          return Reply{answer("", status, "Connection: close\r\n"), Then::hang};
        },
        std::nullopt, [](const auto&) { return true; });
    const auto http = request({.port = server.port(), .body = std::string(std::size_t{16} * 1024 * 1024, 'x')});
    EXPECT_EQ(http->TESSELHTTPsend(), expected);
    EXPECT_FALSE(http->requestSentCompletely());
  }
}

TEST_F(Transport, Base64IsOneLine) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {std::string("\0\xFF", 2), "AP8="}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(library->TESSELHTTPbase64encode(bytes), text);
  std::string expected;
  for (int i = 0; i < 2000000; ++i) expected += "Zm9v";
  std::string bytes;
  for (int i = 0; i < 2000000; ++i) bytes += "foo";
  EXPECT_TRUE(library->TESSELHTTPbase64encode(bytes + "f") == expected + "Zg==");
}

}  // namespace
}  // namespace kartix::adapters
