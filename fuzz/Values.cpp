#include <cmath>

#include "Target.h"
#include "adapters/libxml2/LibXml.h"
#include "common/CodePage.h"
#include "common/Dates.h"
#include "common/LocalTimeText.h"
#include "common/Numbers.h"
#include "common/Scrambling.h"
#include "common/Text.h"
#include "common/Utf16.h"
#include "gateway/StreetAddress.h"

/// Functions over any text: numbers, dates, addresses, passwords, encodings, XML.
namespace kartix::fuzz {
namespace {

/// Names and texts of elements.
std::string contentOf(const platform::XmlDocument& document) {
  std::string content;
  for (const char* const path : {"//a", "//a/b", "a//b", "//a//b", ".//a"}) {
    for (platform::XmlNode node : document.selectNodes(path))
      content += document.nodeText(node) + std::to_string(document.children(node, "b").size()) + "|";
  }
  platform::XmlNode root = document.documentElement();
  return content + document.nodeName(root) + document.nodeText(root);
}

}  // namespace

void documents(Input input) {
  static const auto library = adapters::makeLibXml();
  const auto message = library->createDocument(adapters::xmlClassNames().front());
  message->loadXML("<a/>");
  message->appendElement(message->documentElement(), "b", input.rest());
  expect(message->loadXML(message->xml()), "any text can be an element's", std::string(input.rest()));
  const auto text = library->decode(input.rest());
  if (!text) return;
  expect(text::isValidUtf8(*text), "what is decoded is UTF-8", *text);
  const auto document = library->createDocument(adapters::xmlClassNames().front());
  if (!document->loadXML(*text)) return expect(!document->documentElement(), "what is no document leaves none");
  const std::string content = contentOf(*document);
  expect(text::isValidUtf8(content), "contents are UTF-8", content);
  const std::string written = document->xml();
  expect(document->loadXML(written) && contentOf(*document) == content, "it is read as it was written", written);
}

void values(Input input) {
  const std::string text(input.rest());
  const double number = leadingNumber(text);
  const std::int32_t whole = leadingInt32(text);
  expect(std::isfinite(number), "a number is finite", text);
  expect(std::abs(number) > 1e9 || whole == std::trunc(number), "its whole part is taken", text);
  const bool below = text.starts_with("0.") && text.find_first_of("eE") == std::string::npos;
  expect(!below || whole == 0, "what is less than one has no whole part", text);
  expect(leadingInt32(" \t" + text) == whole && leadingInt32(std::to_string(whole) + "x") == whole, "numbers stay",
         text);

  const bool valid = text::isValidUtf8(text);
  expect(!valid || text::length(displayToDatabase(text)) == 8, "a date of the database has eight characters", text);
  const std::string checked = checkedDatabaseDate(text);
  expect(checked == noDate || (checked == text && text::length(text) == 8), "a date is kept or none", text);
  const auto time = parseLocalTime(text);
  expect(!time || moment::stamp(*time).size() == 17, "a moment is one", text);

  const StreetAddress parts = SplitStreet(text);
  const auto dense = [](const std::string& spaced) { return text::replaceAll(spaced, " ", ""); };
  expect(dense(parts.street + parts.number + parts.addOn) == dense(text), "no character of an address gets lost",
         text);

  const std::string ansi = codepage::fromAnsi(text);
  expect(codepage::toAnsi(ansi) == text, "every byte survives", text);
  const std::string password(text::untilNul(ansi));
  expect(DecryptLong(CryptLong(password)) == password, "a password comes back as it was", password);
  DecryptLong(text);
  const std::string decoded = utf16::decode(utf16::encode(text));
  expect(text::isValidUtf8(decoded) && (decoded == text || !valid), "UTF-16 holds every text", text);
  const std::size_t half = text::length(text) / 2;
  expect(text::left(text, half) + text::mid(text, half) == text, "two pieces make the whole", text);
  expect(text::length(text::left(text, half)) == half, "a piece has its length", text);
}

}  // namespace kartix::fuzz
