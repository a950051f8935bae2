#include "ostreltransforms/zipwith/RangeZips.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

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

double AdjustRightWrappedFunctor::Apply(double position, Value const& ends) const {
  detail::RequireValue(ends);
  IStoreTuple const& members = ends->AsTuple();
  if (position > limit_) return FetchStoreValue<double>(members.GetMember(0)) + limit_;
  return FetchStoreValue<double>(members.GetMember(1));
}

InterpolateIndexedRangeFunctor::InterpolateIndexedRangeFunctor(ParameterSpan parameters) {
  if (parameters.empty()) throw std::out_of_range("invalid vector<T> subscript");
  detail::RequireParameterCount(parameters.size(), 1);
  detail::RequireValue(parameters[0]);
  for (Value const& range : parameters[0]->AsTypedArray<Value>().GetValues()) {
    IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
    RangeUtilities::Ends const ends = RangeUtilities::GetEnds(tuple);
    double const start = Operators::ConvertToDouble(*ends.minimum);
    double const span = Operators::ConvertToDouble(*ends.maximum) - start;
    ranges_.push_back({start, span, RangeUtilities::IsLog(tuple)});
  }
}

double InterpolateIndexedRangeFunctor::Apply(double fraction, int index) const {
  auto const place = static_cast<std::uint32_t>(index);
  if (place >= ranges_.size()) return 0.0;
  Range const& range = ranges_[place];
  double const value = fraction * range.span + range.start;
  return range.isLog ? std::exp(value) : value;
}

void InvlerpMultiPaneFunctor::ThrowNoSuchPane(int pane) const {
  std::size_t const count = std::min(lower_.GetCount(), upper_.GetCount());
  std::wstring const text = L"pane " + std::to_wstring(pane) + L" is not one of the " +
                            std::to_wstring(count) + L" that have bounds";
  throw OrtRuntimeException(OrtError_WrongValueKind, OStringCore(text.c_str()));
}

}  // namespace OstrelTransforms
