#pragma once

#include <utility>

#include "ostrelrtcore/StoreType.h"

namespace OstrelTransforms {

// Where a number lies between two bounds: 0 at the lower, 1 at the upper. An empty range gives infinities and
// NaN, or in the special form special rows of kind 1.
template <class T>
class InvlerpFunctor {
 public:
  InvlerpFunctor(T lower, T upper) : lower_(lower), range_(upper - lower) {}

  T Apply(T x) const { return (x - lower_) / range_; }

  // A special row is taken as 0 and keeps its kind.
  std::pair<T, ort::core::SpecialKind> Apply(T x, ort::core::SpecialKind kind) const {
    if (range_ == T{0}) return {T{0}, ort::core::SpecialKind::Missing};
    return {Apply(kind == ort::core::SpecialKind::None ? x : T{0}), kind};
  }

 private:
  T lower_;
  T range_;
};

// Both halves of a range with a middle go from 0 to 1, on purpose: a caller tells them apart by comparing
// with the middle. An empty half gives its far end: 0 below, 1 above. NaN counts as above.
template <class T>
class ThreeInvlerpFunctor {
 public:
  ThreeInvlerpFunctor(T low, T mid, T high)
      : low_(low), mid_(mid), high_(high), below_(low, mid), above_(mid, high) {}

  T Apply(T x) const {
    T const below = low_ == mid_ ? T{0} : below_.Apply(x);
    T const above = mid_ == high_ ? T{1} : above_.Apply(x);
    return mid_ > x ? below : above;
  }

 private:
  T low_;
  T mid_;
  T high_;
  InvlerpFunctor<T> below_;
  InvlerpFunctor<T> above_;
};

}  // namespace OstrelTransforms
