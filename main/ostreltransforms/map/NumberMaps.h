#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "ostrelrtcore/RowLoop.h"
#include "ostrelsys/IntTypes.h"
#include "ostreltransforms/map/ElementaryFunctions.h"

namespace OstrelTransforms {

namespace detail {

// Row by row the greater (or the lesser) of a number and a bound, and of the two the bound where neither is
// or one is NaN, as the baseline's own instructions have it; compilers spell the comparison out in four
// there.
template <bool takesGreater>
void BoundRows(std::span<double const> input, double bound, std::span<double> output) {
  auto const choose = [bound](double x) {
    bool const isKept = takesGreater ? x > bound : bound > x;
    return isKept ? x : bound;
  };
  std::size_t row = 0;
#if defined(__SSE2__)
  if (ort::core::GetVectorLevel() == ort::core::VectorLevel::Baseline) {
    __m128d const bounds = _mm_set1_pd(bound);
    for (; row + 2 <= input.size(); row += 2) {
      __m128d const pair = _mm_loadu_pd(&input[row]);
      _mm_storeu_pd(&output[row], takesGreater ? _mm_max_pd(pair, bounds) : _mm_min_pd(pair, bounds));
    }
  }
#endif
  double const* const from = input.data() + row;
  double* const to = output.data() + row;
  ort::core::RunRows(input.size() - row, [=](std::size_t i) { to[i] = choose(from[i]); });
}

}  // namespace detail

// The strict comparisons decide: a NaN gives the bound.
template <class T>
class ClampMinFunctor {
 public:
  explicit ClampMinFunctor(T minimum) : minimum_(minimum) {}
  T Apply(T x) const { return x > minimum_ ? x : minimum_; }
  void ApplyToArray(std::span<T const> input, std::span<T> output) const {
    detail::BoundRows<true>(input, minimum_, output);
  }

 private:
  T minimum_;
};

template <class T>
class ClampMaxFunctor {
 public:
  explicit ClampMaxFunctor(T maximum) : maximum_(maximum) {}
  T Apply(T x) const { return maximum_ > x ? x : maximum_; }
  void ApplyToArray(std::span<T const> input, std::span<T> output) const {
    detail::BoundRows<false>(input, maximum_, output);
  }

 private:
  T maximum_;
};

template <class T>
class AddIfLessThanFunctor {
 public:
  AddIfLessThanFunctor(T threshold, T addend) : threshold_(threshold), addend_(addend) {}
  T Apply(T x) const {
    T const sum = x + addend_;
    return threshold_ > x ? sum : x;
  }

 private:
  T threshold_;
  T addend_;
};

inline double AbsoluteValue(double x) { return std::fabs(x); }

// The nearest integer, halves away from zero; saturates, and gives 0 for NaN. Without branches and without
// conversions that vector instructions lack.
[[gnu::always_inline]] inline ort::core::int64 Round(double x) {
  using detail::BitsIf;
  constexpr std::uint64_t integers = 0x4330'0000'0000'0000;  // 2^52: from here on there are no fractions
  auto const bits = std::bit_cast<std::uint64_t>(x);
  std::uint64_t const sign = bits >> 63;
  std::uint64_t const magnitudeBits = bits & ~(std::uint64_t{1} << 63);
  auto const magnitude = std::bit_cast<double>(magnitudeBits);

  // Below 2^52: to the nearest even integer, then a half that went down goes up.
  double const even = (magnitude + 0x1p52) - 0x1p52;
  double const rounded =
      even + std::bit_cast<double>(BitsIf(magnitude - even == 0.5, std::bit_cast<std::uint64_t>(1.0)));
  std::uint64_t const small = std::bit_cast<std::uint64_t>(rounded + 0x1p52) - integers;
  // From 2^52 to 2^63: the mantissa shifted by the exponent.
  std::uint64_t const mantissa = (magnitudeBits & detail::kMantissaMask) | (std::uint64_t{1} << 52);
  std::uint64_t const large = mantissa << (((magnitudeBits >> 52) - 1075) & 15);
  std::uint64_t const greatest = (std::uint64_t{1} << 63) - 1 + sign;

  std::uint64_t const result = BitsIf(magnitude < 0x1p52, small) |
                               BitsIf((magnitude >= 0x1p52) & (magnitude < 0x1p63), large) |
                               BitsIf(magnitude >= 0x1p63, greatest);
  return static_cast<ort::core::int64>((result ^ (0 - sign)) + sign);
}

}  // namespace OstrelTransforms
