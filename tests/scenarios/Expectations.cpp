#include "scenarios/Expectations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <utility>

#include "common/CodePage.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "scenarios/Pictures.h"
#include "scenarios/StoredTrace.h"
#include "support/Dtd.h"
#include "support/Files.h"

namespace kartix::test {
namespace {

/// A failure shows the lines that differ.
void expectSame(const std::string& what, const std::string& found, const std::string& expected) {
  EXPECT_EQ(expected, found) << what;
}

/// One entry a line.
std::string lines(const Json& list) {
  std::string text;
  for (const Json& entry : list) text += entry.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
  return text;
}

/// The events of a kind, each as `shorten` gives it.
template <class Shorten>
Json eventsOf(const Outcome& outcome, const std::string& kind, Shorten shorten) {
  Json found = Json::array();
  for (const Json& event : outcome.transcript) {
    if (event["event"] == kind) found.push_back(shorten(event));
  }
  return found;
}

/// Sound, caption and text of each message box.
Json messagesOf(const Outcome& outcome) {
  Json messages = Json::array();
  std::string sound;
  for (const Json& event : outcome.transcript) {
    if (event["event"] == "sound") sound = event["alias"];
    if (event["event"] != "ready" || !event["window"].get<std::string>().ends_with("MessageBox")) continue;
    messages.push_back({std::exchange(sound, {}), event["caption"], event["controls"]["Label1"]["text"]});
  }
  return messages;
}

/// The class where it changes, and each call as "Member(argument,argument) = returned" or "Member ! error".
Json callsOf(const Outcome& outcome) {
  const auto text = [](const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); };
  Json calls = Json::array();
  std::string progId;
  for (const Json& event : eventsOf(outcome, "object", [](const Json& e) { return e; })) {
    if (event["progid"] != progId) calls.push_back(progId = event["progid"]);
    std::string call = event["member"];
    std::string arguments;
    for (const Json& argument : event["args"]) arguments += (arguments.empty() ? "" : ",") + text(argument);
    if (!event["args"].empty()) call += "(" + arguments + ")";
    if (event.contains("error")) call += " ! " + text(event["error"]);
    if (event.contains("returns") && !event["returns"].is_null()) call += " = " + text(event["returns"]);
    calls.push_back(call);
  }
  return calls;
}

/// "StartForm" is the first time that the window waits, "StartForm#3" the third, "StartForm#last" the last. A control
/// is expected to have a text, or the values of an object.
void compareReady(const Outcome& outcome, const std::string& moment, const Json& expected) {
  SCOPED_TRACE(moment);
  const std::string window = moment.substr(0, moment.find('#'));
  const std::string number = moment.size() > window.size() ? moment.substr(window.size() + 1) : "1";
  std::vector<Json> waits;
  for (const Json& event : outcome.transcript) {
    if (event["event"] == "ready" && event["window"] == window) waits.push_back(event["controls"]);
  }
  const std::size_t at = number == "last" ? waits.size() : std::stoul(number);
  ASSERT_TRUE(at > 0 && at <= waits.size()) << window << " waited " << waits.size() << " times";
  const Json& controls = waits[at - 1];
  for (const auto& [name, wanted] : expected.items()) {
    ASSERT_TRUE(controls.contains(name)) << "no control " << name;
    const Json values = wanted.is_object() ? wanted : Json{{"text", wanted}};
    for (const auto& [key, value] : values.items()) EXPECT_EQ(controls[name].value(key, Json()), value) << name;
  }
}

std::string header(const RecordedRequest& request, const std::string& name) {
  const std::string begin = "\r\n" + name + ": ";
  const auto at = request.head.find(begin);
  if (at == std::string::npos) return {};
  return request.head.substr(at + begin.size(), request.head.find("\r\n", at + 1) - at - begin.size());
}

void checkRequest(const RecordedRequest& request) {
  EXPECT_TRUE(request.head.starts_with("POST ")) << request.head;
  EXPECT_EQ(header(request, "Content-Type"), "text/xml");
  EXPECT_TRUE(request.body.starts_with("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>")) << request.body;
  EXPECT_EQ(dtdViolations(request.body), "") << request.body;
}

/// In the stored body, the names of "pictures" stand for what those files hold.
void compareRequest(const Installation& installation, const RecordedRequest& request, const Json& expected) {
  if (expected.contains("path")) {
    EXPECT_EQ(request.head.substr(0, request.head.find("\r\n")),
              "POST " + expected["path"].get<std::string>() + " HTTP/1.1");
  }
  EXPECT_EQ(header(request, "Cookie"), expected.value("cookies", ""));
  if (expected.contains("connection")) {
    EXPECT_EQ(request.connection, expected["connection"].get<int>());
  }
  for (const std::string piece : part(expected, "bodyHas")) {
    EXPECT_NE(request.body.find(piece), std::string::npos) << piece << " is not in " << request.body.substr(0, 4000);
  }
  if (!expected.contains("body")) return;
  std::string body;
  for (const std::string& line : linesOf(readBytes(scenarioFile("requests", expected["body"])))) {
    body += line.substr(std::min(line.find_first_not_of(' '), line.size()));
  }
  Json pictures = Json::object();
  for (const auto& [name, file] : part(expected, "pictures").items()) {
    pictures[name] = base64Of(installation.file(file));
  }
  body = substitute(body, pictures);
  const auto oneElementALine = [](const std::string& text) { return text::replaceAll(text, "><", ">\n<"); };
  expectSame("elements", oneElementALine(request.body), oneElementALine(body));
}

void compareTrace(const Installation& installation, const std::string& expected) {
  const std::filesystem::path file = installation.file("trace.txt");
  ASSERT_EQ(std::filesystem::exists(file), !expected.empty());
  if (expected.empty()) return;
  EXPECT_TRUE(readBytes(file).ends_with("\r\n"));
  const int level = leadingInt32(installation.scenario()["settings"].value("ZFER.DebugLevel", ""));
  const std::string stored = substitute(readBytes(scenarioFile("traces", expected)), installation.names());
  expectSame("trace lines", masked(readBytes(file)), expandTrace(stored, level));
}

/// Expects the lines in this order in the trace, others between them.
void findInTrace(const Installation& installation, const Json& expected) {
  const std::vector<std::string> found = linesOf(masked(installation.trace()));
  auto at = found.begin();
  for (const std::string line : expected) {
    at = std::find(at, found.end(), "TIME  " + codepage::toAnsi(line) + "\r");
    ASSERT_NE(at, found.end()) << "not in the trace, or not there: " << line;
  }
}

/// The order book with the identifier of each entry as its number, and without the times.
std::string bookOf(const Installation& installation) {
  constexpr char separator = '\t';
  std::map<std::string, std::string> numbers;
  std::string text;
  for (const std::string& line : linesOf(readBytes(installation.file("book.txt")))) {
    std::istringstream fields(line);
    std::string step;
    std::string id;
    std::string time;
    std::string rest;
    std::getline(std::getline(std::getline(fields, step, separator), id, separator), time, separator);
    std::getline(fields, rest);
    const std::string& number = numbers.emplace(id, std::to_string(numbers.size() + 1)).first->second;
    text += step + " " + number + " " + text::replaceAll(rest, "\t", " ") + "\n";
  }
  return text;
}

void compareProperties(const Outcome& outcome, const Json& expected) {
  Json found = Json::object();
  for (const auto& [name, value] : outcome.properties) {
    if (expected.contains(name)) found[name] = value;
  }
  expectSame("properties", found.dump(2), expected.dump(2));
}

void checkWhatAlwaysHolds(const Installation& installation, const Outcome& outcome, const Json& expect) {
  EXPECT_EQ(outcome.scriptMismatch.value_or(""), "");
  EXPECT_EQ(outcome.init, expect.value("init", true));
  EXPECT_EQ(outcome.requests.size(), part(installation.scenario(), "replies").size());
  for (const RecordedRequest& request : outcome.requests) checkRequest(request);
  expectSame("messages", lines(messagesOf(outcome)), lines(part(expect, "messages")));
}

}  // namespace

void checkExpectations(const Installation& installation, const Outcome& outcome) {
  const Json& expect = installation.scenario()["expect"];
  checkWhatAlwaysHolds(installation, outcome, expect);
  const auto compare = [&](const char* key, const Json& found) {
    if (expect.contains(key)) expectSame(key, lines(found), lines(expect[key]));
  };
  compare("windows", eventsOf(outcome, "show", [](const Json& event) { return event["window"]; }));
  compare("sounds", eventsOf(outcome, "sound", [](const Json& event) { return event["alias"]; }));
  compare("progress", eventsOf(outcome, "progress", [](const Json& event) {
            return Json{event["value"], event["text"]};
          }));
  compare("calls", callsOf(outcome));
  compare("tunnels", outcome.tunnels);
  EXPECT_EQ(outcome.result, expect.value("result", outcome.result));
  compareProperties(outcome, part(expect, "properties"));
  if (expect.contains("trace")) compareTrace(installation, expect["trace"]);
  if (expect.contains("traceHas")) findInTrace(installation, expect["traceHas"]);
  if (expect.contains("book")) {
    std::string expected;
    for (const std::string line : expect["book"]) expected += line + "\n";
    expectSame("book", bookOf(installation), expected);
  }
  for (const auto& [file, picture] : part(expect, "pictures").items()) {
    EXPECT_EQ(describePicture(installation.file(file)), picture) << file;
  }
  if (expect.contains("requests")) {
    ASSERT_EQ(outcome.requests.size(), expect["requests"].size());
  }
  for (std::size_t i = 0; i < part(expect, "requests").size(); ++i) {
    SCOPED_TRACE("request " + std::to_string(i + 1));
    compareRequest(installation, outcome.requests[i], expect["requests"][i]);
  }
  for (const auto& [moment, controls] : part(expect, "ready").items()) compareReady(outcome, moment, controls);
  for (const auto& [path, value] : part(expect, "settings").items()) {
    EXPECT_EQ(installation.storedSetting(path), value) << path;
  }
  for (const auto& [path, value] : part(expect, "ini").items())
    EXPECT_EQ(installation.storedIni(path), value) << path;
}

}  // namespace kartix::test
