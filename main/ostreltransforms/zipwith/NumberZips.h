#pragma once

#include <bit>
#include <cstdint>
#include <utility>

#include "ostrelrtcore/StoreType.h"
#include "ostrelsys/IntTypes.h"
#include "ostreltransforms/map/ElementaryFunctions.h"

// Zip-withs of numbers.
namespace OstrelTransforms {

// Strict comparisons decide: on a tie, and beside a NaN, the result is b.
template <class T>
T Min(T a, T b) {
  return b > a ? a : b;
}
template <class T>
T Max(T a, T b) {
  return a > b ? a : b;
}

template <class T>
T BitOr(T a, T b) {
  return a | b;
}

// b in the high half, a in the low one.
inline ort::core::int64 ConcatIntegers(int a, int b) {
  auto const high = std::uint64_t{static_cast<std::uint32_t>(b)} << 32;
  return static_cast<ort::core::int64>(high | static_cast<std::uint32_t>(a));
}

// Special of kind 1 where an operand is special or the divisor zero.
inline std::pair<double, ort::core::SpecialKind> DivideSpecial(double a, ort::core::SpecialKind aKind,
                                                               double b, ort::core::SpecialKind bKind) {
  using ort::core::SpecialKind;
  bool const isOrdinary = (aKind == SpecialKind::None) & (bKind == SpecialKind::None) & (b != 0.0);
  // The quotient is taken in any case, so that rows need no branch.
  return {detail::NumberIf(isOrdinary, a / b), isOrdinary ? SpecialKind::None : SpecialKind::Missing};
}

// Positions on the left stay as they are: adding minus zero changes no number. So rows need no branch.
class AddToRightFunctor {
 public:
  explicit AddToRightFunctor(double offset) : offset_(std::bit_cast<std::uint64_t>(offset)) {}
  double Apply(double position, bool isLeft) const {
    constexpr auto nothing = std::bit_cast<std::uint64_t>(-0.0);
    return position + std::bit_cast<double>(offset_ ^ detail::BitsIf(isLeft, offset_ ^ nothing));
  }

 private:
  std::uint64_t offset_;
};

// The mark's index is not read.
class CalcMarkHalfSizeFunctor {
 public:
  explicit CalcMarkHalfSizeFunctor(double scale) : scale_(scale) {}
  double Apply(double size, int /*mark*/) const { return size * scale_ * 0.5; }

 private:
  double scale_;
};

// A left end moves by half of what the position exceeds the limit.
class AdjustLeftWrappedFunctor {
 public:
  explicit AdjustLeftWrappedFunctor(double limit) : limit_(limit) {}
  double Apply(double position, double left) const {
    double const moved = left + (position - limit_) * 0.5;
    return position > limit_ ? moved : left;
  }

 private:
  double limit_;
};

// A running total to which every run of equal keys adds its first amount alone. Key -1 is the mark of "no row
// yet", on purpose: a row after one with that key begins the total anew.
template <class T>
class GroupByRunningSumFunctor {
 public:
  T Apply(int key, T amount) {
    auto const bits = static_cast<std::uint32_t>(key);
    bool const isFirst = lastKey_ == kNoKey;
    if (!isFirst && bits == lastKey_) return runningSum_;
    runningSum_ = isFirst ? amount : amount + runningSum_;
    lastKey_ = bits;
    return runningSum_;
  }

 private:
  static constexpr std::uint32_t kNoKey = 0xFFFFFFFF;
  std::uint32_t lastKey_ = kNoKey;
  T runningSum_ = 0;
};

}  // namespace OstrelTransforms
