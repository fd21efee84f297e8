#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

/// Sums over pixels, several values at a time, in the vectors that the compilers know. Where the processor has a step
/// of its own it is called by its name, for they do not find it. All processors give the same.
namespace kartix::adapters::images {

using Bytes16 = std::uint8_t __attribute__((vector_size(16)));
using Shorts8 = std::int16_t __attribute__((vector_size(16)));
using Integers4 = std::int32_t __attribute__((vector_size(16)));

template <class Vector>
Vector loaded(const void* from) {
  Vector vector;
  std::memcpy(&vector, from, sizeof vector);
  return vector;
}

/// The first eight bytes of `a` and `b` in turn, or the last eight.
inline Bytes16 firstOfBoth(Bytes16 a, Bytes16 b) {
#ifdef __SSE2__
  return reinterpret_cast<Bytes16>(_mm_unpacklo_epi8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#else
  return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
#endif
}
inline Bytes16 lastOfBoth(Bytes16 a, Bytes16 b) {
#ifdef __SSE2__
  return reinterpret_cast<Bytes16>(_mm_unpackhi_epi8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#else
  return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
#endif
}

/// Each pair of neighbours in `values` times that in `shares`, both products added.
inline Integers4 pairSums(Shorts8 values, Shorts8 shares) {
#ifdef __SSE2__
  return reinterpret_cast<Integers4>(
      _mm_madd_epi16(reinterpret_cast<__m128i>(values), reinterpret_cast<__m128i>(shares)));
#else
  Integers4 sums = {};
  for (int i = 0; i < 4; ++i) sums[i] = values[2 * i] * shares[2 * i] + values[2 * i + 1] * shares[2 * i + 1];
  return sums;
#endif
}

/// Both as numbers of 16 bits.
inline Shorts8 packed(Integers4 a, Integers4 b) {
#ifdef __SSE2__
  return reinterpret_cast<Shorts8>(_mm_packs_epi32(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#else
  return Shorts8{static_cast<std::int16_t>(a[0]), static_cast<std::int16_t>(a[1]), static_cast<std::int16_t>(a[2]),
                 static_cast<std::int16_t>(a[3]), static_cast<std::int16_t>(b[0]), static_cast<std::int16_t>(b[1]),
                 static_cast<std::int16_t>(b[2]), static_cast<std::int16_t>(b[3])};
#endif
}

/// The first and the last four in turn.
inline Shorts8 halvesInTurn(Shorts8 values) {
#ifdef __SSE2__
  const auto all = reinterpret_cast<__m128i>(values);
  return reinterpret_cast<Shorts8>(_mm_unpacklo_epi16(all, _mm_unpackhi_epi64(all, all)));
#else
  return __builtin_shufflevector(values, values, 0, 4, 1, 5, 2, 6, 3, 7);
#endif
}

/// The four values, each as the nearest that a byte can hold.
inline std::array<std::uint8_t, 4> toBytes(Integers4 values) {
  std::array<std::uint8_t, 4> bytes{};
#ifdef __SSE2__
  const __m128i words = _mm_packs_epi32(reinterpret_cast<__m128i>(values), _mm_setzero_si128());
  const int four = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(bytes.data(), &four, sizeof four);
#else
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(std::clamp<std::int32_t>(values[i], 0, 255));
#endif
  return bytes;
}

/// The two shares at `shares`, over and over.
inline Shorts8 pairOf(const std::int16_t* shares) {
  std::int32_t pair = 0;
  std::memcpy(&pair, shares, sizeof pair);
  return reinterpret_cast<Shorts8>(Integers4{pair, pair, pair, pair});
}

}  // namespace kartix::adapters::images
