#include <algorithm>

#include "Target.h"
#include "adapters/curl/Curl.h"
#include "common/Text.h"
#include "support/LoopbackServer.h"

/// Whatever bytes a server sends for an answer, with another request after them.
namespace kartix::fuzz {
namespace {

bool isOneLine(const std::string& text) {
  return std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; });
}

/// The status, and of an answer the body.
std::pair<std::int32_t, std::string> post(platform::HttpLibrary& library, const test::LoopbackServer& server) {
  const std::size_t before = server.requests().size();
  const auto request = library.TESSELHTTPCreate();
  request->TESSELHTTPsetServer("127.0.0.1", server.port());
  request->TESSELHTTPsetMethod("POST");
  request->TESSELHTTPsetBody("body");
  const std::int32_t status = request->TESSELHTTPsend();
  expect((status >= 100 && status <= 999) || (status >= -27 && status <= -1), "a status is one",
         std::to_string(status));
  expect(status < 0 || status >= 300 || request->requestSentCompletely(), "half a request is not answered");
  expect(server.requests().size() <= before + 1, "nothing is sent twice");
  const std::string reason = request->TESSELHTTPgetResponseDesc(1000);
  expect(isOneLine(reason) && text::isValidUtf8(reason), "a reason is one line", reason);
  const std::string cookie = request->TESSELHTTPgetSetCookie("kba.session");
  expect(cookie.find_first_of("\n;") == std::string::npos, "a cookie is on one line", cookie);
  return {status, status > 0 ? request->TESSELHTTPgetResponseBody() : ""};
}

}  // namespace

void transport(Input input) {
  using namespace std::chrono_literals;
  // They come over a connection that was kept, which stays for a moment: the next request may be made on it too.
  const test::LoopbackServer server({{test::answer("the first", "200 OK", "Keep-Alive: timeout=9\r\n")},
                                     {std::string(input.rest()), test::Reply::Then::close, 3ms},
                                     {test::answer("the last")}});
  const auto library = adapters::makeCurlHttp({"", 10, 10});
  expect(post(*library, server).second == "the first", "a good answer is taken");
  post(*library, server);
  const auto [status, body] = post(*library, server);
  expect(status < 0 || (status == 200 && body == "the last"), "the next request gets its own answer", body);
}

}  // namespace kartix::fuzz
