#include "ostreltransforms/map/RangeMaps.h"

#include "maps/MapUtil.h"
#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms {

using namespace ort::core;
namespace Operators = StoreValueOperators;
using RangeUtilities::Ends;

Value ExtendPointRanges(Value const& range) {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  Ends ends = RangeUtilities::GetEnds(tuple);
  if (RangeUtilities::IsLog(tuple)) ends = RangeUtilities::TakeLogarithms(ends);
  return RangeUtilities::MakeRange(RangeUtilities::WidenPoint(ends, RangeUtilities::GetFieldType(tuple)),
                                   tuple);
}

Value ClearRanges(Value const& range) {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  int const mode = RangeUtilities::GetModeCode(tuple);
  if (RangeUtilities::FixesBoth(mode)) return range;
  Ends ends = RangeUtilities::GetEnds(tuple);
  if (!RangeUtilities::FixesMinimum(mode)) ends.minimum = RangeUtilities::ClearEnd(ends.minimum);
  if (!RangeUtilities::FixesMaximum(mode)) ends.maximum = RangeUtilities::ClearEnd(ends.maximum);
  return RangeUtilities::MakeRange(ends, tuple);
}

Value PadRangeTableFunctor::Apply(Value const& range) const {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  Ends const ends = RangeUtilities::GetEnds(tuple);
  return RangeUtilities::MakeRange(
      {RangeUtilities::MoveEnd(ends.minimum, -below_), RangeUtilities::MoveEnd(ends.maximum, above_)}, tuple);
}

Value ExpandMinAndMaxFunctor::Apply(Value const& range) const {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  Ends const ends = RangeUtilities::GetEnds(tuple);
  bool const containsRange = Operators::CompareAsDoubles(*newEnds_.minimum, *ends.minimum) <= 0 &&
                             Operators::CompareAsDoubles(*newEnds_.maximum, *ends.maximum) >= 0;
  return containsRange ? RangeUtilities::MakeRange(newEnds_, tuple) : range;
}

Value ExpandAroundPointFunctor::Apply(Value const& range) const {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  double const point = Operators::ConvertToDouble(*RangeUtilities::GetEnds(tuple).minimum);
  if (point == 0.0) return RangeUtilities::MakeRange(zeroEnds_, tuple);

  auto const projector = MapUtil::MakeProjector(projectorKind_, eccentricity_);
  double const center = projector->GetInverseOf(isX_, point);
  double const back = projector->GetCoordinate(isX_, center);
  double low = projector->GetCoordinate(isX_, center - halfSize_);
  double high = projector->GetCoordinate(isX_, center + halfSize_);
  if (isX_) {
    // Longitudes wrap. The second case is not the first one's mirror, on purpose: it collapses the range onto
    // its lower end.
    bool const lowWrapped = low >= back;
    bool const highWrapped = back >= high;
    if (lowWrapped && !highWrapped) low = back - (high - back);
    if (highWrapped && !lowWrapped) high = back - (back - low);
  }
  return RangeUtilities::MakeRange({factory::MakeReal64(low), factory::MakeReal64(high)}, tuple);
}

}  // namespace OstrelTransforms
