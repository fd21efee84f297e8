#include <gtest/gtest.h>

#include "gateway/StreetAddress.h"

namespace kartix {
namespace {

TEST(StreetAddress, IsSplitAtTheNumberOfItsLastDigit) {
  // In "Ü12" one character is before the number, though two bytes.
  for (const std::string wanted :
       {"Hauptstraße 12 a>Hauptstraße|12|a", "Hauptstr.12-14>Hauptstr.|12|-14", " Am Markt >Am Markt||", "A12>A12||",
        "Ü12>Ü12||", "Öd12>Öd|12|", "12>12||", " -12>-12||", ">||",
        "Straße des 17. Juni 135>Straße des 17. Juni|135|", "Straße des 17. Juni>Straße des|17|. Juni",
        "Quadrat C4 7  Hinterhaus >Quadrat C4|7|Hinterhaus", "Hof -3>Hof||-3", "Weg 5b>Weg|5|b"}) {
    const std::string address = wanted.substr(0, wanted.find('>'));
    const StreetAddress parts = SplitStreet(address);
    EXPECT_EQ(address + ">" + parts.street + "|" + parts.number + "|" + parts.addOn, wanted);
  }
}

}  // namespace
}  // namespace kartix
