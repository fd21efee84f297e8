#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "adapters/libxml2/LibXml.h"

namespace kartix::adapters {
namespace {

using namespace std::string_literals;

class Xml : public ::testing::Test {
 protected:
  std::unique_ptr<platform::XmlLibrary> library = makeLibXml();
  std::unique_ptr<platform::XmlDocument> document = library->createDocument("microsoft.xmldom");
};

TEST_F(Xml, AnswerIsReadWhateverEncodingItsDeclarationNames) {
  ASSERT_TRUE(document->loadXML(R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"
                                "<a><liste><b>Jörg</b><c>1</c><b>&#xE4;<![CDATA[&]]></b></liste><b>drei</b></a>"));
  const auto found = document->selectNodes("//b");
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(document->nodeText(found[0]), "Jörg");
  EXPECT_EQ(document->nodeText(found[1]), "ä&");
  const auto list = document->selectNodes("//liste").at(0);
  EXPECT_EQ(document->selectNodes("b", list).size(), 2U);
  EXPECT_EQ(document->nodeText(list), "Jörg1ä&");
  EXPECT_EQ(document->children(document->documentElement(), "b"), std::vector{found[2]});
  EXPECT_EQ(document->selectNodes("//a/liste//b", list).size(), 2U);
  EXPECT_EQ(document->selectNodes(".//b", list).size(), 2U);
  EXPECT_THAT(document->selectNodes("/liste"), ::testing::IsEmpty());
  EXPECT_THAT(document->selectNodes("//B"), ::testing::IsEmpty());
  EXPECT_THAT(document->selectNodes("//b["), ::testing::IsEmpty());
  EXPECT_EQ(document->xml().find("<?xml version=\"1.0\"?><a><liste><b>Jörg</b>"), 0U);
}

TEST_F(Xml, UnusableTextLeavesTheDocumentEmptyAndSaysNothing) {
  std::string deep;
  for (int i = 0; i < 300; ++i) deep += "<a>";
  for (int i = 0; i < 300; ++i) deep += "</a>";
  const std::string laughs =
      R"(<!DOCTYPE a [<!ENTITY b "ha"><!ENTITY c "&b;&b;&b;"><!ENTITY d "&c;&c;&c;">]><a>&d;</a>)";
  const std::vector<std::string> texts = {"",
                                          "kein XML",
                                          "<a><b></a>",
                                          "<a>\xE4</a>",
                                          "<a/><b/>",
                                          deep,
                                          laughs,
                                          R"(<!DOCTYPE a [<!ENTITY f SYSTEM "file:///etc/hostname">]><a>&f;</a>)",
                                          R"(<!DOCTYPE a [<!ENTITY f "x">]><a b="&f;"/>)",
                                          R"(<!DOCTYPE a SYSTEM "http://127.0.0.1:9/a.dtd"><a>&unbekannt;</a>)",
                                          R"(<!DOCTYPE a [<!ENTITY % p SYSTEM "file:///etc/hostname"> %p;]><a/>)",
                                          "<a>" + std::string(std::size_t{17} * 1024 * 1024, ' ') + "</a>"};
  ::testing::internal::CaptureStderr();
  for (const std::string& text : texts) {
    document->loadXML("<alt/>");
    EXPECT_FALSE(document->loadXML(text)) << text.substr(0, 80);
    EXPECT_EQ(document->documentElement(), nullptr);
    EXPECT_EQ(document->xml(), "");
    EXPECT_THAT(document->selectNodes("//a"), ::testing::IsEmpty());
  }
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(Xml, AnswersAreDecodedByMarkThenDeclarationThenContent) {
  const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
      {"<a>\xC3\xA4</a>", "<a>ä</a>"},
      {"<a>\xE4\x80\x81</a>\xFF", "<a>ä€\xC2\x81</a>ÿ"},
      {"\xEF\xBB\xBF<a>\xC3\xA4</a>", "<a>ä</a>"},
      {"\xFF\xFE<\0a\0\xE4\0"s, "<aä"},
      {"\0<\0?\0\xE4"s, "<?ä"},
      {"<?xml version='1.0' encoding = 'iso-8859-1'?>\xE4", "<?xml version='1.0' encoding = 'iso-8859-1'?>ä"},
      {"<?xml encoding=\"Windows-1252\"?>\x80\x90", "<?xml encoding=\"Windows-1252\"?>€\xC2\x90"},
      {"<?xml encoding=\"ISO-8859-15\"?>\xA4", "<?xml encoding=\"ISO-8859-15\"?>€"},
      {"<?xml encoding=\"UTF-8\"?>\xE4", std::nullopt},
      {"<?xml encoding=\"UTF-16\"?><a/>", std::nullopt},
      {"<?xml encoding=\"klingonisch\"?><a/>", std::nullopt},
      {"<?xml encoding=\"UTF-8//IGNORE\"?>\xE4", std::nullopt},
      {"\xFF\xFE<", std::nullopt}};
  for (const auto& [bytes, text] : cases) EXPECT_EQ(library->decode(bytes), text) << bytes;
}

}  // namespace
}  // namespace kartix::adapters
