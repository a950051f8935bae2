#include "ostreltransforms/reduce/RunningValues.h"

#include "ostreltransforms/RangeUtilities.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms {
namespace {

double ReadEnd(Value const& end) {
  return end->IsSpecial() ? 0.0 : StoreValueOperators::ConvertToDouble(*end);
}

}  // namespace

double GetMaxSizeForAxis(double size, Value const& range) {
  RangeUtilities::Ends const ends = RangeUtilities::GetEnds(RangeUtilities::GetTuple(range));
  double const span = std::fabs(ReadEnd(ends.maximum) - ReadEnd(ends.minimum));
  return size > span ? size : span;
}

bool IsAxisLocked(bool isLocked, Value const& range) {
  constexpr int kLockedMode = 3;
  return isLocked || RangeUtilities::GetModeCode(RangeUtilities::GetTuple(range)) == kLockedMode;
}

}  // namespace OstrelTransforms
