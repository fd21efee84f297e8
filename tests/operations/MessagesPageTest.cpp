#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "adapters/libxml2/LibXml.h"
#include "common/CodePage.h"
#include "common/Text.h"
#include "gateway/Answers.h"
#include "gateway/KBAInterface.h"
#include "platform/XmlLibrary.h"
#include "support/Files.h"

namespace kartix {
namespace {

std::vector<std::string> examples() {
  constexpr std::string_view begin = "```xml\n";
  const std::string page = test::readBytes(KARTIX_DOCUMENTS "/messages.md");
  std::vector<std::string> found;
  for (std::size_t at = page.find(begin); at != std::string::npos; at = page.find(begin, at)) {
    at += begin.size();
    found.push_back(page.substr(at, page.find("```", at) - at));
  }
  return found;
}

/// The requests that the tests of whole operations expect to go out.
std::vector<std::string> testedRequests() {
  std::vector<std::string> requests;
  for (const auto& file : std::filesystem::directory_iterator(KARTIX_REQUESTS)) {
    std::string text = codepage::fromAnsi(test::readBytes(file.path()));
    for (const char* image : {"$PHOTO", "$SIGNATURE"}) text = text::replaceAll(text, image, "/9j/");
    requests.push_back(text);
  }
  return requests;
}

/// What the component makes of an answer, in a word.
std::string meaning(const std::string& answer) {
  using Kind = InquiryAnswer::Kind;
  const auto library = adapters::makeLibXml();
  const auto document = library->createDocument(adapters::xmlClassNames().front());
  if (!document || !document->loadXML(answer)) return "not well-formed";
  const std::string root = rootName(*document);
  if (root == "ZEVIS-HINWEIS") return root + " " + firstText(*document, "//RETC");
  if (root == "information" || root == "zkr-mhinweis" || root == "zkr-mitteilung") {
    const KbaAnswer read =
        root == "information" ? readInformation(*document, CardNumber::none) : readNotificationReply(*document);
    return root + " " + std::to_string(read.code) + ", errors " + std::to_string(read.errors.size());
  }
  const InquiryAnswer read = readInquiryAnswer(*document);
  if (read.kind == Kind::record) return root + ": record";
  if (read.kind == Kind::list) return root + ": list";
  if (read.kind == Kind::count) return root + ": " + std::to_string(read.hits);
  return read.kind == Kind::notLoggedIn ? root + ": not logged in" : root + ": refusal or unknown";
}

TEST(MessagesPage, ShowsWhatIsSentAndAnswersThatAreUnderstood) {
  const std::vector<std::string> requests = testedRequests();
  std::vector<std::string> sent;
  std::vector<std::string> answers;
  for (const std::string& example : examples()) {
    if (std::find(requests.begin(), requests.end(), example) == requests.end()) {
      answers.push_back(meaning(example));
      continue;
    }
    sent.push_back(example.substr(example.rfind("</")));
  }
  EXPECT_EQ(sent, (std::vector<std::string>{"</ZEVIS-LOGIN>\n", "</zkr-anfrage>\n", "</zkr-anfrage>\n",
                                            "</zkr-mitteilung>\n", "</driverCard>\n", "</orderCancellation>\n"}));
  EXPECT_EQ(answers, (std::vector<std::string>{"ZEVIS-HINWEIS 0", "ZEVIS-HINWEIS 3005", "zkr-auskunft: record",
                                               "zkr-trefferliste: list", "zkr-anfrage: 57",
                                               "zkr-hinweis: not logged in", "zkr-mhinweis 0, errors 0",
                                               "zkr-mitteilung 4999, errors 1", "information 0, errors 0",
                                               "information 4999, errors 2", "information 0, errors 0"}));
}

}  // namespace
}  // namespace kartix
