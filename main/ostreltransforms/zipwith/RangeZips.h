#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "ostrelrtcore/FunctionRegistry.h"
#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/map/ColumnParameter.h"

// Zip-withs of range tuples (see RangeUtilities), of other tuples, and of positions in the ranges of panes.
namespace OstrelTransforms {

// Moves one end of a range of numbers to 0 where the flag says so and the range does not reach it: the upper
// end when the range lies below, else the lower one when it lies above. On a logarithmic scale the end is
// moved where its logarithm is 0, to 1. A special end counts as 0. The new ends are Real64. Ranges of dates
// and of the modes that fix both ends (3 and 10) are returned as they are.
Value ExtendRangesToIncludeZero(Value const& range, bool includesZero);

// Member 0 of a tuple when the flag is true, else member 1; throws 55 when that is not of type T.
template <class T>
T iif(bool condition, Value const& choices) {
  detail::RequireValue(choices);
  return ort::core::FetchStoreValue<T>(choices->AsTuple().GetMember(condition ? 0 : 1));
}

// For a position beyond the limit, member 0 of the tuple plus the limit; else member 1, also for NaN. The
// position itself never enters the result, on purpose.
class AdjustRightWrappedFunctor {
 public:
  explicit AdjustRightWrappedFunctor(double limit) : limit_(limit) {}
  double Apply(double position, Value const& ends) const;

 private:
  double limit_;
};

// The number at a fraction of one of many ranges; 0 for an index outside them. A logarithmic range
// holds logarithms. Made from one column of range tuples; without a parameter it throws std::out_of_range
// "invalid vector<T> subscript".
class InterpolateIndexedRangeFunctor {
 public:
  explicit InterpolateIndexedRangeFunctor(ort::core::ParameterSpan parameters);
  double Apply(double fraction, int index) const;

 private:
  struct Range {
    double start;
    double span;
    bool isLog;
  };
  std::vector<Range> ranges_;
};

// Where a number lies between the bounds of its pane; special of kind 1 in a pane of no width. A special
// number is taken as 0 and keeps its kind. A pane outside either column of bounds throws 55.
class InvlerpMultiPaneFunctor {
 public:
  InvlerpMultiPaneFunctor(Value lower, Value upper) : lower_(std::move(lower)), upper_(std::move(upper)) {}

  std::pair<double, ort::core::SpecialKind> Apply(double value, ort::core::SpecialKind kind, int pane,
                                                  ort::core::SpecialKind /*paneKind*/) const {
    using ort::core::SpecialKind;
    auto const index = static_cast<std::uint32_t>(pane);
    if (index >= lower_.GetCount() || index >= upper_.GetCount()) ThrowNoSuchPane(pane);
    double const lower = lower_.GetData()[index];
    double const range = upper_.GetData()[index] - lower;
    if (range == 0.0) return {0.0, SpecialKind::Missing};
    return {((kind == SpecialKind::None ? value : 0.0) - lower) / range, kind};
  }

 private:
  [[noreturn]] void ThrowNoSuchPane(int pane) const;

  ColumnParameter<double> lower_;
  ColumnParameter<double> upper_;
};

}  // namespace OstrelTransforms
