#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "ostrelsys/IntTypes.h"

namespace OstrelTransforms {

// The strict comparisons decide: a NaN gives the bound.
template <class T>
class ClampMinFunctor {
 public:
  explicit ClampMinFunctor(T minimum) : minimum_(minimum) {}
  T Apply(T x) const { return x > minimum_ ? x : minimum_; }

 private:
  T minimum_;
};

template <class T>
class ClampMaxFunctor {
 public:
  explicit ClampMaxFunctor(T maximum) : maximum_(maximum) {}
  T Apply(T x) const { return maximum_ > x ? x : maximum_; }

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

// The nearest integer, halves away from zero; saturates, and gives 0 for NaN.
inline ort::core::int64 Round(double x) {
  using Limits = std::numeric_limits<ort::core::int64>;
  if (std::isnan(x)) return 0;
  if (x >= 0x1p63) return Limits::max();
  if (x <= -0x1p63) return Limits::min();
  return static_cast<ort::core::int64>(std::round(x));
}

}  // namespace OstrelTransforms
