#pragma once

#include <optional>

/// What the personaliser demands of the two images of an order. Sizes are in pixels.
namespace kartix::image_rules {

/// Height to which a photo of `width` by `height` is scaled in proportion; nothing when it does not fit a card.
std::optional<int> photoHeight(int width, int height);

/// Width to which a signature of `width` by `height` is scaled in proportion; nothing when it does not fit a card.
std::optional<int> signatureWidth(int width, int height);

/// A larger canvas and where the old picture lies on it.
struct Canvas {
  int width = 0;
  int height = 0;
  int x = 0;
  int y = 0;
};

/// The canvas that a signature needs when it is too long or too high for its width; nothing when it is neither.
std::optional<Canvas> signatureCanvas(int width, int height);

}  // namespace kartix::image_rules
