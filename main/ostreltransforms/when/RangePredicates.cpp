#include "ostreltransforms/when/RangePredicates.h"

#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms {

using ort::core::StoreValue;
namespace Operators = StoreValueOperators;

bool StraddlesZero(StoreValue const& minimum, StoreValue const& maximum) {
  return Operators::IsNumeric(minimum) && Operators::ConvertToDouble(minimum) < 0 &&
         Operators::ConvertToDouble(maximum) > 0;
}

bool IsDivergingAuto(StoreValue const& minimum, StoreValue const& maximum, StoreValue const& centre) {
  if (centre.IsSpecial()) return StraddlesZero(minimum, maximum);
  return minimum.IsLessThan(centre) && centre.IsLessThan(maximum);
}

bool IsReversedAuto(StoreValue const& minimum, StoreValue const& maximum, StoreValue const& centre) {
  if (centre.IsSpecial()) {
    return Operators::IsNumeric(minimum) && Operators::ConvertToDouble(minimum) < 0 &&
           Operators::ConvertToDouble(maximum) <= 0;
  }
  return minimum.IsLessThan(centre) && (maximum.IsLessThan(centre) || maximum.Equals(centre));
}

}  // namespace OstrelTransforms
