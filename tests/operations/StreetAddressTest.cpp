#include <gtest/gtest.h>

#include <vector>

#include "gateway/StreetAddress.h"

namespace kartix {
namespace {

struct Case {
  const char* address;
  const char* street;
  const char* number;
  const char* addOn;
};

TEST(StreetAddress, IsSplitAtTheNumberOfItsLastDigit) {
  const std::vector<Case> cases = {
      {"Hauptstraße 12 a", "Hauptstraße", "12", "a"},
      {"Hauptstr.12-14", "Hauptstr.", "12", "-14"},
      {"Am Markt", "Am Markt", "", ""},
      {" Am Markt ", "Am Markt", "", ""},
      {"A12", "A12", "", ""},
      {"Ü12", "Ü12", "", ""},  // one character before the number, though two bytes
      {"Öd12", "Öd", "12", ""},
      {"12", "12", "", ""},
      {" -12", "-12", "", ""},
      {"", "", "", ""},
      {"Straße des 17. Juni 135", "Straße des 17. Juni", "135", ""},
      {"Straße des 17. Juni", "Straße des", "17", ". Juni"},
      {"Quadrat C4 7  Hinterhaus ", "Quadrat C4", "7", "Hinterhaus"},
      {"Hof -3", "Hof", "", "-3"},
      {"Weg 5b", "Weg", "5", "b"},
  };
  for (const Case& c : cases) {
    const StreetAddress parts = SplitStreet(c.address);
    EXPECT_EQ(parts.street, c.street) << c.address;
    EXPECT_EQ(parts.number, c.number) << c.address;
    EXPECT_EQ(parts.addOn, c.addOn) << c.address;
  }
}

}  // namespace
}  // namespace kartix
