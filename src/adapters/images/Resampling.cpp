#include "adapters/images/Resampling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <numeric>
#include <vector>

#include "adapters/images/PixelSums.h"

namespace kartix::adapters::images {
namespace {

constexpr double lobes = 3;

/// Shares are numbers of 14 bits after the point, what is summed up of rows has 6: both fit 16 bits, sums 32.
constexpr int shareBits = 14;
constexpr int sumBits = 6;
constexpr int whole = 1 << shareBits;

/// The filter at places `step` apart. Only the first takes a sine and a cosine, which each further one turns on.
class Filter {
 public:
  /// `place` is in pixels of the filter, and so is `step`.
  Filter(double place, double step)
      : angle_(third * place),
        step_(third * step),
        sine_(std::sin(angle_)),
        cosine_(std::cos(angle_)),
        stepSine_(std::sin(step_)),
        stepCosine_(std::cos(step_)) {}

  /// sinc(x) sinc(x / 3) at this place; the next call is for the next one.
  double next() {
    constexpr double tiny = 1e-6;
    double value = 0;
    if (std::abs(angle_) < tiny) {
      value = 1;
    } else if (std::abs(angle_) < std::numbers::pi) {
      // sin(3a) = 3 sin(a) - 4 sin(a)^3
      value = sine_ * sine_ * (3 - 4 * sine_ * sine_) / (3 * angle_ * angle_);
    }
    angle_ += step_;
    const double sine = sine_ * stepCosine_ + cosine_ * stepSine_;
    cosine_ = cosine_ * stepCosine_ - sine_ * stepSine_;
    sine_ = sine;
    return value;
  }

 private:
  static constexpr double third = std::numbers::pi / lobes;
  double angle_;
  double step_;
  double sine_;
  double cosine_;
  double stepSine_;
  double stepCosine_;
};

/// What one line of the result takes of the picture, from pixel `first` on, and of the surroundings.
struct Line {
  std::size_t first = 0;
  int around = 0;
};

/// All lines of one side. Each has as many shares, which add up to 1 with that of the surroundings: so loops over
/// them are of one length, and the processor knows it. They go in pairs.
struct Side {
  std::size_t pairs = 0;
  std::vector<Line> lines;
  std::vector<std::int16_t> shares;

  const std::int16_t* sharesOf(std::size_t line) const { return shares.data() + 2 * pairs * line; }
};

/// Adds a line with `shares` of the pixels from `first` on, `around` of the surroundings, and all of `sum`. It begins
/// at a whole `stride`; so does the end of the side, which has `count` pixels.
void addLine(Side& side, std::size_t count, std::size_t stride, std::size_t first, const std::vector<double>& shares,
             double around, double sum) {
  const double unit = whole / sum;
  const auto rounded = [unit](double share) { return static_cast<int>(share * unit + (share < 0 ? -0.5 : 0.5)); };
  const Line line{std::min(first - first % stride, count - 2 * side.pairs), rounded(around)};
  side.lines.push_back(line);
  const std::size_t begin = side.shares.size();
  side.shares.resize(begin + 2 * side.pairs);
  if (shares.empty()) return;
  const auto own = side.shares.begin() + static_cast<std::ptrdiff_t>(begin + first - line.first);
  std::transform(shares.begin(), shares.end(), own,
                 [&](double share) { return static_cast<std::int16_t>(rounded(share)); });
  // What rounding has left over goes where it is seen least.
  const auto end = own + static_cast<std::ptrdiff_t>(shares.size());
  const int left = whole - line.around - std::accumulate(own, end, 0);
  std::int16_t& most = *std::max_element(own, end);
  most = static_cast<std::int16_t>(most + left);
}

/// Lines of one side, which the result has `target` of. The picture has `count` pixels from `at` on, on a canvas of
/// `canvas` pixels. Each line takes pixels from a whole `stride` on, which is 1 or 2.
Side linesOfSide(int count, double at, double canvas, int target, std::size_t stride) {
  const double step = canvas / target;
  const double reach = std::max(step, 1.0);
  // The picture as if its width were even: the pixel after the last has no share.
  const std::size_t even = static_cast<std::size_t>(count) + static_cast<std::size_t>(count % 2);
  Side side;
  side.pairs = std::min((static_cast<std::size_t>(2 * lobes * reach) + 1 + stride) / 2, even / 2);
  side.lines.reserve(static_cast<std::size_t>(target));
  side.shares.reserve(static_cast<std::size_t>(target) * 2 * side.pairs);
  std::vector<double> shares;
  for (int line = 0; line < target; ++line) {
    const double centre = (line + 0.5) * step - at - 0.5;
    const int from = static_cast<int>(std::ceil(centre - lobes * reach));
    const int last = static_cast<int>(std::floor(centre + lobes * reach));
    Filter filter((from - centre) / reach, 1 / reach);
    int first = 0;
    double around = 0;
    double sum = 0;
    shares.clear();
    for (int pixel = from; pixel <= last; ++pixel) {
      const double share = filter.next();
      const bool inside = pixel >= 0 && pixel < count;
      const double place = pixel + 0.5 + at;
      if (!inside && (place < 0 || place >= canvas)) continue;
      sum += share;
      if (!inside) around += share;
      if (inside && shares.empty()) first = pixel;
      if (inside) shares.push_back(share);
    }
    addLine(side, even, stride, static_cast<std::size_t>(first), shares, around, sum);
  }
  return side;
}

using Colour = std::array<int, 4>;

/// What line `y` of the result takes of the rows of the picture, for every value of a row.
void addRows(std::vector<std::int16_t>& sums, const View& picture, const Side& side, std::size_t y,
             std::vector<const std::uint8_t*>& rows, const Colour& around) {
  constexpr std::size_t atOnce = 16;
  constexpr int shift = shareBits - sumBits;
  const Line& line = side.lines[y];
  const std::int16_t* const shares = side.sharesOf(y);
  for (std::size_t tap = 0; tap < rows.size(); ++tap) {
    rows[tap] = picture.row(std::min(static_cast<int>(line.first + tap), picture.height - 1));
  }
  Integers4 start{};
  for (int i = 0; i < 4; ++i) start[i] = line.around * around[static_cast<std::size_t>(i)] + (1 << (shift - 1));

  const std::size_t count = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  std::size_t at = 0;
  for (; at + atOnce <= count; at += atOnce) {
    std::array<Integers4, 4> sum = {start, start, start, start};
    for (std::size_t tap = 0; tap < rows.size(); tap += 2) {
      constexpr Bytes16 none = {};
      const auto words = [](Bytes16 bytes) { return reinterpret_cast<Shorts8>(bytes); };
      const Shorts8 share = pairOf(shares + tap);
      const auto a = loaded<Bytes16>(rows[tap] + at);
      const auto b = loaded<Bytes16>(rows[tap + 1] + at);
      const Bytes16 first = firstOfBoth(a, b);
      const Bytes16 last = lastOfBoth(a, b);
      sum[0] += pairSums(words(firstOfBoth(first, none)), share);
      sum[1] += pairSums(words(lastOfBoth(first, none)), share);
      sum[2] += pairSums(words(firstOfBoth(last, none)), share);
      sum[3] += pairSums(words(lastOfBoth(last, none)), share);
    }
    const Shorts8 low = packed(sum[0] >> shift, sum[1] >> shift);
    const Shorts8 high = packed(sum[2] >> shift, sum[3] >> shift);
    std::memcpy(&sums[at], &low, sizeof low);
    std::memcpy(&sums[at + atOnce / 2], &high, sizeof high);
  }
  for (; at < count; ++at) {
    int sum = start[at % 4];
    for (std::size_t tap = 0; tap < rows.size(); ++tap) sum += shares[tap] * rows[tap][at];
    sums[at] = static_cast<std::int16_t>(sum >> shift);
  }
}

constexpr int columnShift = shareBits + sumBits;
constexpr int half = 1 << (columnShift - 1);

/// A line of a coloured result. The values of two pixels are laid beside each other first, as their shares are.
void addColumns(std::uint8_t* out, std::vector<std::int16_t>& sums, const Side& side, const Colour& around) {
  constexpr std::size_t two = 8;  // values of two pixels
  for (std::size_t at = 0; at < sums.size(); at += two) {
    const Shorts8 turned = halvesInTurn(loaded<Shorts8>(&sums[at]));
    std::memcpy(&sums[at], &turned, sizeof turned);
  }
  const Integers4 colour = Integers4{around[0], around[1], around[2], around[3]} << sumBits;
  const std::int16_t* share = side.shares.data();
  for (const Line& line : side.lines) {
    const std::int16_t* in = sums.data() + line.first * 4;
    // Two sums that need not wait for each other.
    Integers4 sum = Integers4{} + half;
    Integers4 other{};
    if (line.around != 0) sum += line.around * colour;
    for (std::size_t left = side.pairs / 2; left > 0; --left, in += 2 * two, share += 4) {
      sum += pairSums(loaded<Shorts8>(in), pairOf(share));
      other += pairSums(loaded<Shorts8>(in + two), pairOf(share + 2));
    }
    if (side.pairs % 2 != 0) {
      other += pairSums(loaded<Shorts8>(in), pairOf(share));
      share += 2;
    }
    const auto bytes = toBytes((sum + other) >> columnShift);
    std::memcpy(out, bytes.data(), sizeof bytes);
    out += sizeof bytes;
  }
}

/// A line of a grey one.
void addColumns(std::uint8_t* out, const std::vector<std::int16_t>& sums, const Side& side, int around) {
  const std::int16_t* share = side.shares.data();
  for (const Line& line : side.lines) {
    const std::int16_t* const in = sums.data() + line.first;
    int sum = line.around * (around << sumBits) + half;
    for (std::size_t tap = 0; tap < 2 * side.pairs; ++tap) sum += share[tap] * in[tap];
    share += 2 * side.pairs;
    *out++ = static_cast<std::uint8_t>(std::clamp(sum >> columnShift, 0, 255));
  }
}

}  // namespace

/// Rows are summed up first: that runs along the memory, however wide the filter.
void resample(const View& picture, const Canvas& canvas, const Target& result) {
  const Side columns = linesOfSide(picture.width, canvas.x, canvas.width, result.width, 2);
  const Side lines = linesOfSide(picture.height, canvas.y, canvas.height, result.height, 1);
  const auto part = [&](unsigned shift) { return static_cast<int>(canvas.around >> shift & 0xFFU); };
  constexpr int opaque = 255;
  constexpr unsigned green = 8;
  constexpr unsigned red = 16;
  const bool grey = picture.channels == 1;
  const Colour around =
      grey ? Colour{part(0), part(0), part(0), part(0)} : Colour{part(0), part(green), part(red), opaque};
  std::vector<const std::uint8_t*> rows(2 * lines.pairs);
  std::vector<std::int16_t> sums(
      (static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(picture.width % 2)) *
      static_cast<std::size_t>(picture.channels));
  for (int y = 0; y < result.height; ++y) {
    addRows(sums, picture, lines, static_cast<std::size_t>(y), rows, around);
    if (grey) {
      addColumns(result.row(y), sums, columns, around[0]);
    } else {
      addColumns(result.row(y), sums, columns, around);
    }
  }
}

}  // namespace kartix::adapters::images
