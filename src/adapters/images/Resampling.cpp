#include "adapters/images/Resampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <vector>

namespace kartix::adapters::images {
namespace {

constexpr double lobes = 3;

double lanczos(double x) {
  if (x == 0) return 1;
  if (std::abs(x) >= lobes) return 0;
  const double angle = std::numbers::pi * x;
  return lobes * std::sin(angle) * std::sin(angle / lobes) / (angle * angle);
}

/// What one line of the result takes: pixels of the picture from `first` on, and the surroundings. The shares add up
/// to 1.
struct Taps {
  int first = 0;
  std::vector<float> shares;
  float around = 0;
};

/// Taps of all `target` lines of one side. The picture has `count` pixels from `at` on, on a canvas of `canvas`
/// pixels.
std::vector<Taps> tapsOfSide(int count, double at, double canvas, int target) {
  const double step = canvas / target;
  const double reach = std::max(step, 1.0);
  std::vector<Taps> side(static_cast<std::size_t>(target));
  std::vector<double> shares;
  for (int line = 0; line < target; ++line) {
    const double centre = (line + 0.5) * step - at - 0.5;
    const int last = static_cast<int>(std::floor(centre + lobes * reach));
    Taps& taps = side[static_cast<std::size_t>(line)];
    double around = 0;
    double sum = 0;
    shares.clear();
    for (int pixel = static_cast<int>(std::ceil(centre - lobes * reach)); pixel <= last; ++pixel) {
      const bool inside = pixel >= 0 && pixel < count;
      const double place = pixel + 0.5 + at;
      if (!inside && (place < 0 || place >= canvas)) continue;
      const double share = lanczos((pixel - centre) / reach);
      sum += share;
      if (!inside) around += share;
      if (inside && shares.empty()) taps.first = pixel;
      if (inside) shares.push_back(share);
    }
    taps.around = static_cast<float>(around / sum);
    taps.shares.resize(shares.size());
    std::transform(shares.begin(), shares.end(), taps.shares.begin(),
                   [sum](double share) { return static_cast<float>(share / sum); });
  }
  return side;
}

/// Sums up a column of the picture for every value of a row. Four rows at a time, for each pass over the sums costs
/// as much as a row.
void addRows(std::vector<float>& sums, const View& picture, const Taps& taps) {
  constexpr std::size_t atOnce = 4;
  const std::size_t count = sums.size();
  float* __restrict sum = sums.data();
  for (std::size_t tap = 0; tap < taps.shares.size(); tap += atOnce) {
    std::array<float, atOnce> share{};
    std::array<const std::uint8_t*, atOnce> row{};
    for (std::size_t i = 0; i < atOnce; ++i) {
      const std::size_t present = std::min(tap + i, taps.shares.size() - 1);
      row[i] = picture.row(taps.first + static_cast<int>(present));
      share[i] = present == tap + i ? taps.shares[present] : 0;
    }
    const auto [a, b, c, d] = row;
    for (std::size_t i = 0; i < count; ++i) {
      sum[i] += share[0] * static_cast<float>(a[i]) + share[1] * static_cast<float>(b[i]) +
                share[2] * static_cast<float>(c[i]) + share[3] * static_cast<float>(d[i]);
    }
  }
}

std::uint8_t toByte(float value) { return static_cast<std::uint8_t>(std::max(0.0F, std::min(value + 0.5F, 255.0F))); }

/// The four bytes of a pixel, reckoned with at once.
using Quad = float __attribute__((vector_size(4 * sizeof(float))));

/// Rows are summed up first: that runs along the memory, however wide the filter. A `Pixel` is `channels` floats.
template <std::size_t channels, class Pixel>
void fill(const Target& result, const View& picture, const std::vector<Taps>& columns, const std::vector<Taps>& rows,
          Pixel around) {
  std::vector<float> sums(static_cast<std::size_t>(picture.width) * channels);
  for (int y = 0; y < result.height; ++y) {
    const Taps& row = rows[static_cast<std::size_t>(y)];
    const Pixel above = row.around * around;
    for (std::size_t i = 0; i < sums.size(); i += channels) std::memcpy(&sums[i], &above, sizeof above);
    addRows(sums, picture, row);

    std::uint8_t* out = result.row(y);
    for (const Taps& column : columns) {
      Pixel value = column.around * around;
      const float* in = sums.data() + static_cast<std::size_t>(column.first) * channels;
      for (const float share : column.shares) {
        Pixel pixel;
        std::memcpy(&pixel, in, sizeof pixel);
        value += share * pixel;
        in += channels;
      }
      std::array<float, channels> parts{};
      std::memcpy(parts.data(), &value, sizeof value);
      for (const float part : parts) *out++ = toByte(part);
    }
  }
}

}  // namespace

void resample(const View& picture, const Canvas& canvas, const Target& result) {
  const auto columns = tapsOfSide(picture.width, canvas.x, canvas.width, result.width);
  const auto rows = tapsOfSide(picture.height, canvas.y, canvas.height, result.height);
  const auto part = [&](unsigned shift) { return static_cast<float>(canvas.around >> shift & 0xFFU); };
  if (picture.channels == 1) {
    fill<1>(result, picture, columns, rows, part(0));
  } else {
    constexpr float opaque = 255;
    constexpr unsigned green = 8;
    constexpr unsigned red = 16;
    fill<4>(result, picture, columns, rows, Quad{part(0), part(green), part(red), opaque});
  }
}

}  // namespace kartix::adapters::images
