#include "dialogs/ImageRules.h"

#include <cstdint>

namespace kartix::image_rules {
namespace {

/// Lengths of the side that is set, and what the other side may then measure.
struct SizeRule {
  int target;
  int whenTooSmall;
  int whenTooLarge;
  int smallest;
  int largest;
};

constexpr SizeRule photo = {.target = 490, .whenTooSmall = 520, .whenTooLarge = 460, .smallest = 365, .largest = 425};
constexpr SizeRule signature = {
    .target = 710, .whenTooSmall = 740, .whenTooLarge = 680, .smallest = 165, .largest = 225};

std::optional<int> targetOf(const SizeRule& rule, int side, int otherSide) {
  if (side <= 0) return std::nullopt;
  // Divided last, so that a picture that meets a limit exactly is not lost to rounding.
  const auto otherAt = [&](int target) { return static_cast<double>(target) * otherSide / side; };
  int target = rule.target;
  if (otherAt(target) < rule.smallest) {
    target = rule.whenTooSmall;
  } else if (otherAt(target) > rule.largest) {
    target = rule.whenTooLarge;
  }
  const double other = otherAt(target);
  return other >= rule.smallest && other <= rule.largest ? std::optional(target) : std::nullopt;
}

}  // namespace

std::optional<int> photoHeight(int width, int height) { return targetOf(photo, height, width); }

std::optional<int> signatureWidth(int width, int height) { return targetOf(signature, width, height); }

std::optional<Canvas> signatureCanvas(int width, int height) {
  constexpr double longest = 4.48;  // width to height
  constexpr double shortest = 3.02;
  if (width <= 0 || height <= 0) return std::nullopt;
  const double ratio = static_cast<double>(width) / height;
  Canvas canvas = {.width = width, .height = height};
  if (ratio > longest) {
    canvas.height = static_cast<int>(std::int64_t{width} * 10 / 44);  // 4.4 to 1
  } else if (ratio < shortest) {
    canvas.width = static_cast<int>(std::int64_t{height} * 31 / 10);  // 3.1 to 1
  } else {
    return std::nullopt;
  }
  canvas.x = (canvas.width - width) / 2;
  canvas.y = (canvas.height - height) / 2;
  return canvas;
}

}  // namespace kartix::image_rules
