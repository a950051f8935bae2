#include "ostreltransforms/zipwith/RangeZips.h"

#include <cmath>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/RangeUtilities.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

double ReadEnd(Value const& end, bool isLog) {
  double const number = end->IsSpecial() ? 0.0 : Operators::ConvertToDouble(*end);
  return isLog ? std::log(number) : number;
}

Value MakeEnd(double end, bool isLog) { return factory::MakeReal64(isLog ? std::exp(end) : end); }

}  // namespace

Value ExtendRangesToIncludeZero(Value const& range, bool includesZero) {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  int const mode = RangeUtilities::GetModeCode(tuple);
  StoreType const fieldType = RangeUtilities::GetFieldType(tuple);
  bool const isLog = RangeUtilities::IsLog(tuple);
  if (!includesZero || mode == 3 || mode == 10 || Operators::IsTemporal(fieldType)) return range;

  RangeUtilities::Ends const ends = RangeUtilities::GetEnds(tuple);
  double minimum = ReadEnd(ends.minimum, isLog);
  double maximum = ReadEnd(ends.maximum, isLog);
  if (0.0 >= maximum) {
    maximum = 0.0;
  } else if (minimum >= 0.0) {
    minimum = 0.0;
  }
  return RangeUtilities::MakeRange({MakeEnd(minimum, isLog), MakeEnd(maximum, isLog)}, tuple, 0.0);
}

}  // namespace OstrelTransforms
