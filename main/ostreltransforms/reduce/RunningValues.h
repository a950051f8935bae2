#pragma once

#include <cmath>
#include <span>
#include <utility>

#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/SeenIntegers.h"

// Running computations of one row after the other: a is the first input's row, often the running value, and b
// the second's.
namespace OstrelTransforms {

template <class T>
T End(T, T b) {
  return b;
}

// b shifted by a whole number, so that it lies within half a unit of a.
inline double WrapXPositionForMaps(double a, double b) { return b - std::floor(b - a + 0.5); }

// The larger of a running size and the length of an axis' range tuple; the length on a tie and beside a NaN.
// A special end counts as 0.
double GetMaxSizeForAxis(double size, Value const& range);

// Whether the running flag is set or the axis' range tuple has mode 3.
bool IsAxisLocked(bool isLocked, Value const& range);

// b; but, from the second row on, the first row's a where b is not a.
class ToUniformValueFunctor {
 public:
  int Apply(int a, int b) {
    if (!std::exchange(isFirst_, false)) return b == a ? b : firstValue_;
    firstValue_ = a;
    return b;
  }

 private:
  int firstValue_ = 0;
  bool isFirst_ = true;
};

// Whether b differs from the row before; true on the first row. A NaN differs from everything.
template <class T>
class IsDistinctPrevFunctor {
 public:
  bool Apply(bool, T const& b) {
    if (!isFirst_ && !(b != previous_)) return false;
    isFirst_ = false;
    previous_ = b;
    return true;
  }

 private:
  T previous_{};
  bool isFirst_ = true;
};

// Whether the row before was missing or null (kinds 1 and 9); true on the first row. Every row of the result
// is an ordinary one.
template <class T>
class IsPreviousValueNullSpecialFunctor {
  using SpecialKind = ort::core::SpecialKind;

 public:
  std::pair<bool, SpecialKind> Apply(bool, SpecialKind, T const&, SpecialKind kind) {
    bool const isNull = previousKind_ == SpecialKind::Missing || previousKind_ == SpecialKind::Null;
    previousKind_ = kind;
    return {std::exchange(isFirst_, false) || isNull, SpecialKind::None};
  }

 private:
  SpecialKind previousKind_ = SpecialKind::None;
  bool isFirst_ = true;
};

class IncOnNewFunctor {
 public:
  int Apply(int, int b) { return seen_.Add(b).mark; }
  void ApplyToArrays(std::span<int const>, std::span<int const> b, std::span<int> output) {
    seen_.AddAll(b, [output](std::size_t row, auto entry) { output[row] = entry.mark; });
  }

 private:
  SeenIntegers<int> seen_;
};

}  // namespace OstrelTransforms
