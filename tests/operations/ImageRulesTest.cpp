#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "dialogs/ImageRules.h"

namespace kartix::image_rules {

bool operator==(const Canvas& a, const Canvas& b) {
  return std::tie(a.width, a.height, a.x, a.y) == std::tie(b.width, b.height, b.x, b.y);
}

namespace {

constexpr std::optional<int> refused;

struct SizeCase {
  int width;
  int height;
  std::optional<int> target;
};

TEST(ImageRules, PhotoIsScaledToAHeightAtWhichItsWidthFits) {
  const std::vector<SizeCase> cases = {
      {300, 400, 490},                                                                 // 367.5 wide
      {365, 490, 490},   {1095, 1470, 490},   {425, 490, 490},     {2975, 3430, 490},  // 365 and 425 wide exactly
      {3649, 4900, 520}, {4251, 4900, 460},                                            // a tenth of a pixel beyond
      {365, 520, 520},   {364, 520, refused},                                          // at the second height
      {425, 460, 460},   {426, 460, refused}, {400, 400, refused}, {240, 400, refused},
      {0, 400, refused}, {300, 0, refused},
  };
  for (const SizeCase& c : cases) EXPECT_EQ(photoHeight(c.width, c.height), c.target) << c.width << "x" << c.height;
}

TEST(ImageRules, SignatureIsScaledToAWidthAtWhichItsHeightFits) {
  const std::vector<SizeCase> cases = {
      {1000, 227, 740},  // 161.17 high at 710, 167.98 at 740
      {710, 165, 710},   {2130, 495, 710},    {710, 225, 710},   {7810, 2475, 710},
      {7100, 1649, 740}, {7100, 2251, 680},   {740, 165, 740},   {740, 164, refused},
      {680, 225, 680},   {680, 226, refused}, {0, 200, refused}, {700, 0, refused},
  };
  for (const SizeCase& c : cases) {
    EXPECT_EQ(signatureWidth(c.width, c.height), c.target) << c.width << "x" << c.height;
  }
}

struct CanvasCase {
  int width;
  int height;
  std::optional<Canvas> canvas;
};

TEST(ImageRules, SignatureOfUnusualShapeGetsALargerCanvasAroundIt) {
  const std::vector<CanvasCase> cases = {
      {1000, 200, Canvas{1000, 227, 0, 13}},
      {500, 250, Canvas{775, 250, 137, 0}},  // offsets of odd differences are rounded down
      {448, 100, std::nullopt},              // 4.48 exactly
      {449, 100, Canvas{449, 102, 0, 1}},
      {302, 100, std::nullopt},  // 3.02 exactly
      {301, 100, Canvas{310, 100, 4, 0}},
      {4400, 900, Canvas{4400, 1000, 0, 50}},  // 4400 / 4.4 in binary is a little less than 1000
      {1, 1, Canvas{3, 1, 1, 0}},
      {0, 10, std::nullopt},
  };
  for (const CanvasCase& c : cases) EXPECT_EQ(signatureCanvas(c.width, c.height), c.canvas) << c.width;
}

}  // namespace
}  // namespace kartix::image_rules
