#include <gtest/gtest.h>

#include "common/CodePage.h"
#include "common/Scrambling.h"

namespace kartix {
namespace {

using codepage::fromAnsi;
using codepage::toAnsi;

std::string codes(std::initializer_list<unsigned char> list) { return {list.begin(), list.end()}; }

TEST(Scrambling, StoredFormIsThatOfEveryInstallation) {
  struct Case {
    std::string plain;
    std::string stored;
  };
  const std::string end = codes({1, 159, 128, 130, 161, 251, 192, 217, 223});
  for (const Case& c : {
           Case{"", end},
           {"a", codes({68, 224, 94, 106, 224, 250, 224, 217, 223})},
           {"ab", codes({98, 224, 224, 106, 224, 225, 224, 225, 223})},
           {"abc", codes({255, 226, 225, 226, 225, 224, 224, 226, 224})},
           {"abcd", codes({169, 225, 225, 226, 225, 227, 226, 225, 224})},
           {"abcde", codes({97, 224, 225, 224, 227, 224, 226, 224, 228})},
           {"abcdef", codes({87, 227, 227, 224, 229, 226, 224, 228, 225})},
           {"abcdefg", codes({86, 227, 230, 226, 229, 225, 224, 228, 230})},
           {"abcdefgh", codes({88, 225, 227, 229, 231, 230, 226, 224, 228}) + end},
           {"\x80\x81\xFF", codes({255, 127, 1, 127, 1, 255, 255, 127, 255})},
       }) {
    EXPECT_EQ(toAnsi(CryptLong(fromAnsi(c.plain))), c.stored) << c.plain;
    EXPECT_EQ(toAnsi(DecryptLong(fromAnsi(c.stored))), c.plain) << c.plain;
  }
}

TEST(Scrambling, EveryPasswordComesBack) {
  constexpr std::size_t longest = 20;
  for (unsigned code = 1; code <= 255; ++code) {
    std::string plain;
    for (std::size_t length = 0; length <= longest; ++length) {
      const std::string stored = CryptLong(fromAnsi(plain));
      ASSERT_EQ(toAnsi(stored).size(), (length / 8 + 1) * 9) << code;
      ASSERT_EQ(toAnsi(DecryptLong(stored)), plain) << code;
      // Different characters, so that one read from the wrong place is noticed.
      plain.push_back(static_cast<char>((code + length * 37 - 1) % 255 + 1));
    }
  }
}

TEST(Scrambling, WhatIsNotOfTheStoredFormGivesNothing) {
  EXPECT_EQ(DecryptLong(""), "");
  EXPECT_EQ(DecryptLong("plain text"), "");
  EXPECT_EQ(DecryptLong("D"), "") << "a block that is broken off";
  // A foreign block between two good ones does not harm them.
  EXPECT_EQ(DecryptLong(CryptLong("ab") + "012345678" + CryptLong("c")), "abc");
}

}  // namespace
}  // namespace kartix
