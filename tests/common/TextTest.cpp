#include <gtest/gtest.h>

#include <limits>

#include "common/CodePage.h"
#include "common/Dates.h"
#include "common/Numbers.h"
#include "common/Text.h"
#include "common/Values.h"

namespace kartix {
namespace {

TEST(Text, PositionsCountCharacters) {
  const std::string name = "Đorđe Müller";
  EXPECT_EQ(text::length(name), 12U);
  EXPECT_EQ(text::left(name, 4), "Đorđ");
  EXPECT_EQ(text::mid(name, 6, 2), "Mü");
  EXPECT_EQ(text::mid(name, 11), "r");
  EXPECT_EQ(text::mid(name, 12), "");
  EXPECT_EQ(text::mid(name, 99, 3), "");
  // Half a character and bytes that are none count as one each, and stay what they are.
  EXPECT_EQ(text::length("a\xC3"), 2U);
  EXPECT_EQ(text::mid("\xFF\xFEz", 1, 2), "\xFEz");
  EXPECT_EQ(text::length("\xF0\x9F\x9A\x9B"), 1U);
}

TEST(Text, InvalidBytesAreToldApart) {
  for (const std::string valid : {"", "Mü\u0081", "\u07FF\u0800\uFFFD", "\U0010FFFF"}) {
    EXPECT_TRUE(text::isValidUtf8(valid)) << valid;
  }
  for (const std::string invalid : {"\xC3", "\xC0\xAF", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80",
                                    "\xF5\x80\x80\x80", "a\x80", "\xE4"}) {
    EXPECT_FALSE(text::isValidUtf8(invalid)) << invalid;
  }
}

TEST(CodePage, EveryByteSurvivesTheRoundTrip) {
  std::string all;
  for (int code = 0; code < 256; ++code) all.push_back(static_cast<char>(code));
  const std::string utf8 = codepage::fromAnsi(all);
  EXPECT_EQ(text::length(utf8), 256U);
  EXPECT_TRUE(text::isValidUtf8(utf8));
  EXPECT_EQ(codepage::toAnsi(utf8), all);
  EXPECT_EQ(codepage::fromAnsi("\x80\x81\x8A\xE4"), "€\u0081Šä");
}

TEST(CodePage, WhatDoesNotFitIsReplacedOrReferredTo) {
  EXPECT_EQ(codepage::toAnsi("Đorđe 𝄞 \xFF"), "?or?e ? ?");
  EXPECT_EQ(codepage::toIsoXml("äbüĐä€c𝄞"),
            "\xE4"
            "b\xFC&#272;\xE4&#8364;c&#119070;");
}

TEST(Numbers, TheLeadingNumberCounts) {
  struct Case {
    std::string text;
    double number;
    std::int16_t small;
    std::int32_t large;
  };
  constexpr std::int16_t most16 = 32767;
  constexpr std::int32_t most32 = 2147483647;
  for (const Case& c : {Case{"12", 12, 12, 12},
                        {"  7 Karten", 7, 7, 7},
                        {"\t\r\n3", 3, 3, 3},
                        {"-5", -5, -5, -5},
                        {"+4.99", 4.99, 4, 4},
                        {"-4.99", -4.99, -4, -4},
                        {"1e5", 100000, most16, 100000},
                        {"1e", 1, 1, 1},
                        {".5", 0.5, 0, 0},
                        {"32768", 32768, most16, 32768},
                        {"-99999", -99999, -32768, -99999},
                        {"2147483648", 2147483648.0, most16, most32},
                        {"-1e300", -1e300, -32768, -most32 - 1},
                        {"1e999", std::numeric_limits<double>::max(), most16, most32},
                        {"1e-999", 0, 0, 0},
                        {"0001", 1, 1, 1}}) {
    EXPECT_DOUBLE_EQ(leadingNumber(c.text), c.number) << c.text;
    EXPECT_EQ(leadingInt16(c.text), c.small) << c.text;
    EXPECT_EQ(leadingInt32(c.text), c.large) << c.text;
  }
  for (const std::string none :
       {"", " ", "abc", "x1", "inf", "-inf", "nan", "-", "+", "--5", ".", "-.", "e5", "ä1"}) {
    EXPECT_EQ(leadingNumber(none), 0) << none;
  }
}

TEST(Dates, AreRearrangedAndNotChecked) {
  EXPECT_EQ(displayToDatabase("ab.cd.efgh"), "efghcdab");
  EXPECT_EQ(displayToDatabase("ä1.ö2.2014"), "2014ö2ä1");
  for (const std::string none : {"31.12.14", "", "31-12-2014", "31.12-2014", "031.12.2014"})
    EXPECT_EQ(displayToDatabase(none), "00000000") << none;
  for (const std::string kept : {"20141231", "00000000", "99999999", "2014ab31"}) {
    EXPECT_EQ(checkedDatabaseDate(kept), kept);
  }
  for (const std::string refused : {"", "2014123", "201412310", "/0000000", "999999990", "a0141231", "Ä0141231"}) {
    EXPECT_EQ(checkedDatabaseDate(refused), "00000000") << refused;
  }
}

TEST(Values, PassBetweenTheKinds) {
  struct Case {
    platform::Value value;
    std::string text;
    std::int32_t number;
  };
  for (const Case& c : {Case{std::monostate(), "", 0},
                        {true, "True", -1},
                        {false, "False", 0},
                        {std::int64_t{-42}, "-42", -42},
                        {std::int64_t{1} << 40U, "1099511627776", 2147483647},
                        {1.5, "1.5", 1},
                        {-1e300, "-1e+300", -2147483647 - 1},
                        {std::numeric_limits<double>::quiet_NaN(), "nan", 0},
                        {std::string(" 17 Treffer"), " 17 Treffer", 17}}) {
    EXPECT_EQ(toText(c.value), c.text);
    EXPECT_EQ(toNumber(c.value), c.number) << c.text;
  }
}

}  // namespace
}  // namespace kartix
