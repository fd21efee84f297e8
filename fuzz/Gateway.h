#pragma once

#include <vector>

#include "Target.h"
#include "common/Numbers.h"
#include "platform/HttpLibrary.h"

namespace kartix::fuzz {

/// What the transport gives for one request.
struct Reply {
  std::int32_t status = platform::http_error::answerBrokenOff;
  bool complete = true;  ///< all of the request has gone out
  std::string cookie;    ///< set for both cookies of the session
  std::string body;

  /// `text` may begin with a line "#STATUS COOKIE"; a "!" in it says that the request has not gone out as a whole.
  static Reply read(const std::string& text) {
    Input rest(text);
    const std::string head = text.starts_with('#') ? rest.line().substr(1) : "200";
    Reply reply{leadingInt32(head), head.find('!') == std::string::npos, head.substr(head.find(' ') + 1), {}};
    // What no transport gives.
    if (reply.status < -27 || reply.status > 999 || (reply.status >= 0 && reply.status < 100)) reply.status = 200;
    if (reply.status >= 100 && reply.status < 300) reply.complete = true;
    if (reply.status > 0) reply.body = rest.rest();
    return reply;
  }
};

struct Sent {
  std::string path;
  std::string body;
  Reply reply;
};

/// A gateway without wires. It gives its replies in turn, and breaks off the answer when there are no more.
struct Gateway : platform::HttpLibrary {
  std::vector<Reply> replies;
  std::vector<Sent> sent;

  std::int32_t TESSELHTTPgetDLLVersion() override { return 205002; }
  std::unique_ptr<platform::HttpRequest> TESSELHTTPCreate() override { return std::make_unique<Request>(*this); }
  std::string TESSELHTTPgetErrorDesc(std::int32_t) override { return "Fehler"; }
  std::string TESSELHTTPbase64encode(std::string_view) override { return "AAAA"; }

  struct Request : platform::HttpRequest {
    explicit Request(Gateway& owner) : gateway(owner) {}

    std::int32_t TESSELHTTPsetServer(std::string_view, std::string_view) override { return 0; }
    std::int32_t TESSELHTTPsetMethod(std::string_view) override { return 12; }
    void TESSELHTTPsetContentType(std::string_view) override {}
    std::int32_t TESSELHTTPsetPath(std::string_view path) override { return own.path = path, 0; }
    std::int32_t TESSELHTTPsetBody(std::string bytes) override { return own.body = std::move(bytes), 0; }
    void TESSELHTTPclearCookies() override {}
    void TESSELHTTPaddCookie(std::string_view, std::string_view value) override {
      expect(value.find_first_of("\r\n;") == std::string_view::npos, "cookies fit a line", std::string(value));
    }
    void TESSELHTTPsetHttpS() override {}
    void TESSELHTTPsetPEM(std::string_view, std::string_view, std::string_view) override {}
    void TESSELHTTPsetSecureProxy(std::string_view) override {}
    void TESSELHTTPclearSecureProxy() override {}
    void useFreshConnection() override {}
    std::int32_t TESSELHTTPsend() override {
      if (gateway.sent.size() < gateway.replies.size()) own.reply = gateway.replies[gateway.sent.size()];
      gateway.sent.push_back(own);
      done = true;
      return own.reply.status;
    }
    bool requestSentCompletely() const override { return done && own.reply.complete; }
    platform::TlsFault tlsFault() const override { return platform::TlsFault::none; }
    std::string TESSELHTTPgetResponseDesc(std::size_t) const override { return own.reply.cookie; }
    const std::string& TESSELHTTPgetResponseBody() const override { return own.reply.body; }
    std::string TESSELHTTPgetSetCookie(std::string_view) const override { return own.reply.cookie; }

    Gateway& gateway;
    Sent own;
    bool done = false;
  };
};

}  // namespace kartix::fuzz
