#include "ostreltransforms/RangeUtilities.h"

#include <limits>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/StoreValueOperators.h"

namespace OstrelTransforms::RangeUtilities {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

Ends WidenNumber(Ends const& ends) {
  StoreValue const& point = *ends.minimum;
  StoreType const type = point.GetStoreType();
  double const v = Operators::ConvertToDouble(point);
  auto const zero = [&] { return Operators::Cast(*factory::MakeInt32(0), type); };
  if (v > 0) return {zero(), Operators::Add(point, point)};
  if (v < 0) return {Operators::Add(point, point), zero()};
  if (v != 0) return ends;
  Value const one = Operators::Cast(*factory::MakeInt32(1), type);
  return {Operators::Subtract(point, *one), Operators::Add(point, *one)};
}

Ends WidenInstant(Ends const& ends) {
  OrtTimeSpan const day(1, 0, 0, 0);
  return {factory::MakeDateTime(ends.minimum->GetDateTime() - day),
          factory::MakeDateTime(ends.maximum->GetDateTime() + day)};
}

Value MoveInteger(StoreValue const& end, double amount) {
  Value const step = factory::MakeReal64(amount)->ConvertTo(StoreType::Int64);
  if (step->IsSpecial()) return factory::MakeSpecial(end.GetTypeInfo(), step->GetSpecialKind());
  int64 const start = Operators::Cast(end, StoreType::Int64)->GetInt64();
  int64 moved = 0;
  if (__builtin_add_overflow(start, step->GetInt64(), &moved))
    moved = start < 0 ? std::numeric_limits<int64>::min() : std::numeric_limits<int64>::max();
  return Operators::Cast(*factory::MakeInt64(moved), end.GetStoreType());
}

}  // namespace

IStoreTuple const& GetTuple(Value const& range) {
  detail::RequireValue(range);
  return range->AsTuple();
}

int GetModeCode(IStoreTuple const& range) { return FetchStoreValue<int>(range.GetMember(kModeCode)); }

StoreType GetFieldType(IStoreTuple const& range) {
  int const code = FetchStoreValue<int>(range.GetMember(kFieldType));
  return code >= 0 && code <= 0xFF ? static_cast<StoreType>(code) : StoreType::Empty;
}

bool IsLog(IStoreTuple const& range) { return FetchStoreValue<bool>(range.GetMember(kIsLog)); }

Ends GetEnds(IStoreTuple const& range) {
  Ends ends = {range.GetMember(kMinimum), range.GetMember(kMaximum)};
  detail::RequireValue(ends.minimum);
  detail::RequireValue(ends.maximum);
  return ends;
}

Ends TakeLogarithms(Ends const& ends) { return {Operators::Ln(*ends.minimum), Operators::Ln(*ends.maximum)}; }

Ends WidenPoint(Ends ends, StoreType fieldType) {
  if (!ends.minimum->Equals(*ends.maximum)) return ends;
  if (Operators::IsNumeric(fieldType)) return WidenNumber(ends);
  if (Operators::IsTemporal(fieldType)) return WidenInstant(ends);
  return ends;
}

Value ClearEnd(Value const& end) { return factory::MakeSpecial(end->GetTypeInfo(), SpecialKind::Missing); }

Value MoveEnd(Value const& end, double amount) {
  if (end->IsSpecial() || amount == 0.0) return end;
  StoreType const type = end->GetStoreType();
  switch (type) {
    case StoreType::Int32:
    case StoreType::Int64:
      return MoveInteger(*end, amount);
    case StoreType::Real32:
      return factory::MakeReal32(static_cast<float>(end->GetReal32() + amount));
    case StoreType::Real64:
      return factory::MakeReal64(end->GetReal64() + amount);
    case StoreType::Date:
    case StoreType::DateTime:
      return Operators::Cast(*Operators::Add(*end, *factory::MakeReal64(amount)), type);
    default:
      throw OrtRuntimeException(OrtError_UnsupportedType, StoreTypeToString(type));
  }
}

Value MakeRange(Ends const& ends, IStoreTuple const& source, double furtherAmount) {
  return factory::MakeTuple(std::vector{MoveEnd(ends.minimum, -furtherAmount),
                                        MoveEnd(ends.maximum, furtherAmount), source.GetMember(kModeCode),
                                        source.GetMember(kFieldType), source.GetMember(kIsLog)});
}

}  // namespace OstrelTransforms::RangeUtilities
