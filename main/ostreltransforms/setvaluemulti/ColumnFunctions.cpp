#include "ostreltransforms/setvaluemulti/ColumnFunctions.h"

#include <algorithm>
#include <optional>
#include <type_traits>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/MultinaryCall.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/setvaluemulti/HeldValues.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

// Calls `visit(T)` with each ordinary row of a column, in order.
template <class T, class Visit>
void ForEachOrdinaryRow(ColumnView const& column, Visit const& visit) {
  if (column.GetUniformSpecialKind() != SpecialKind::None) return;
  auto const* const elements = static_cast<T const*>(column.GetFirstElement());
  int row = 0;
  auto const visitTo = [&](int end) {
    if (column.IsConstant()) {
      for (int i = row; i < end; ++i) visit(*elements);
    } else {
      std::for_each(elements + row, elements + end, visit);
    }
    row = end;
  };
  for (int const special : column.GetSpecialRows()) {
    visitTo(special);
    row = special + 1;
  }
  visitTo(column.GetCount());
}

template <bool greatest, class T>
bool IsBetter(T const& value, T const& best) {
  return greatest ? value > best : value < best;
}

Value MakeDateScalar(OrtDateTime value) { return factory::MakeDate(value); }
template <class T>
Value MakeScalar(T value) {
  return detail::MakeResult(value);
}

template <bool greatest, class T>
Value FindInColumn(ColumnView const& column, Value (*makeScalar)(T) = MakeScalar<T>) {
  std::optional<T> best;
  ForEachOrdinaryRow<T>(column, [&](T value) {
    if (!best || IsBetter<greatest>(value, *best)) best = value;
  });
  return best ? makeScalar(*best) : nullptr;
}

template <bool greatest>
Value FindInColumn(StoreValue const& input) {
  ColumnView const& column = input.AsColumn();
  switch (input.GetTypeInfo().GetElementType()) {
    case StoreType::Int32:
      return FindInColumn<greatest, int>(column);
    case StoreType::Int64:
      return FindInColumn<greatest, int64>(column);
    case StoreType::Real32:
      return FindInColumn<greatest, float>(column);
    case StoreType::Real64:
      return FindInColumn<greatest, double>(column);
    case StoreType::Date:
      return FindInColumn<greatest, OrtDateTime>(column, MakeDateScalar);
    case StoreType::DateTime:
      return FindInColumn<greatest, OrtDateTime>(column);
    default:
      throw OrtRuntimeException(OrtError_WrongValueKind,
                                StoreTypeToString(input.GetTypeInfo().GetElementType()));
  }
}

template <bool greatest>
Value FindInCollection(StoreValue const& collection) {
  Value best;
  ForEachHeldValue(collection, [&](Value const& value) {
    if (value->IsSpecial()) return;
    bool const isBetter = best == nullptr || (greatest ? best->IsLessThan(*value) : value->IsLessThan(*best));
    if (isBetter) best = value;
  });
  return best;
}

template <class T>
bool HasKind(StoreValue const& value) {
  return std::is_same_v<T, OrtDateTime> ? Operators::IsTemporal(value) : Operators::IsNumeric(value);
}

}  // namespace

template <class T>
Value Accumulate(Value const& column) {
  constexpr StoreType kType = ElementTraits<T>::kStoreType;
  detail::RequireColumnOf(kType, column);
  ColumnView const& view = column->AsColumn();
  // Integers wrap.
  std::conditional_t<std::is_integral_v<T>, uint64, T> sum = 0;
  bool hasRow = false;
  ForEachOrdinaryRow<decltype(sum)>(view, [&](auto value) {
    sum += value;
    hasRow = true;
  });
  StoreTypeInfo const type(kType, false);
  if (!hasRow) return factory::MakeConstantArray<uint64>(type, view.GetCount(), SpecialKind::Missing);
  return factory::MakeConstantArray<T>(type, static_cast<T>(sum), view.GetCount());
}

template Value Accumulate<int64>(Value const&);
template Value Accumulate<double>(Value const&);

bool ColumnNotEmpty(Value const& column, bool countsAsFilled) {
  return countsAsFilled || column->AsColumn().GetCount() > 0;
}

Value InterpolateValues(double fraction, StoreValue const& from, StoreValue const& to) {
  return Operators::Interpolate(fraction, from, to, false);
}

template <class T, bool greatest>
Value FindExtremum(std::vector<Value> const& inputs) {
  if (inputs.empty()) return detail::MakeResult(T{});
  detail::RequireValue(inputs[0]);
  StoreValue const& input = *inputs[0];
  Value const best = input.GetStoreType() == StoreType::Array ? FindInColumn<greatest>(input)
                                                              : FindInCollection<greatest>(input);
  constexpr StoreType kType = ElementTraits<T>::kStoreType;
  if (best == nullptr) return factory::MakeSpecial(StoreTypeInfo(kType, false), SpecialKind::Missing);
  if (!HasKind<T>(*best)) {
    throw OrtRuntimeException(OrtError_WrongValueKind, StoreTypeToString(best->GetStoreType()));
  }
  return Operators::Cast(*best, kType);
}

template Value FindExtremum<int64, false>(std::vector<Value> const&);
template Value FindExtremum<int64, true>(std::vector<Value> const&);
template Value FindExtremum<double, false>(std::vector<Value> const&);
template Value FindExtremum<double, true>(std::vector<Value> const&);
template Value FindExtremum<OrtDateTime, false>(std::vector<Value> const&);
template Value FindExtremum<OrtDateTime, true>(std::vector<Value> const&);

}  // namespace OstrelTransforms
