#include "ostreltransforms/setvaluemulti/ScaleRange.h"

#include <cmath>
#include <limits>
#include <utility>

#include "ostrelrtcore/Factory.h"
#include "ostrelrtcore/RFormatString.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/map/ColumnParameter.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
namespace Operators = StoreValueOperators;

constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

double ReadNumber(Value const& end) { return end->IsSpecial() ? kMissing : Operators::ConvertToDouble(*end); }

Value MakeNumber(double number, StoreType fieldType) {
  return Operators::IsTemporal(fieldType) ? factory::MakeDateTime(OrtDateTime::FromDouble(number))
                                          : factory::MakeReal64(number);
}

// The tuple's value as one of the type in which ends are written.
Value KeepEnd(Value const& end, StoreType fieldType) {
  if (end->IsSpecial()) return end;
  if (Operators::IsTemporal(fieldType) && Operators::IsTemporal(*end))
    return factory::MakeDateTime(end->GetDateTime());
  return MakeNumber(Operators::ConvertToDouble(*end), fieldType);
}

Value MakeEnd(double number, double before, Value const& source, ScaleRange const& range,
              bool keepsLogarithms) {
  bool const writesLogarithm = range.isLog && keepsLogarithms;
  if (number == before && !writesLogarithm) return KeepEnd(source, range.fieldType);
  double const written = range.isLog && !keepsLogarithms ? std::exp(number) : number;
  if (std::isfinite(written)) return MakeNumber(written, range.fieldType);
  if (!writesLogarithm || source->IsSpecial()) return KeepEnd(source, range.fieldType);
  return factory::MakeSpecial(StoreTypeInfo::Real64, SpecialKind::Missing);
}

bool IsSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

ScaleRange MakeEmpty() { return {kMissing, kMissing, false, false, false, StoreType::Empty}; }

}  // namespace

bool ScaleRange::HasExtent() const { return minimum < maximum && std::isfinite(GetExtent()); }

double ScaleRange::ToScale(double number) const {
  double const scaled = !isLog ? number : number > 0 ? std::log(number) : kMissing;
  return std::isfinite(scaled) ? scaled : kMissing;
}

void ScaleRange::OpenPoint() {
  if (minimum != maximum) return;
  StoreType const type = isLog ? StoreType::Real64 : fieldType;
  RangeUtilities::Ends const ends =
      RangeUtilities::WidenPoint({MakeNumber(minimum, type), MakeNumber(maximum, type)}, type);
  double const low = ReadNumber(ends.minimum), high = ReadNumber(ends.maximum);
  if (!fixesMinimum && std::isfinite(low)) minimum = low;
  if (!fixesMaximum && std::isfinite(high)) maximum = high;
}

ScaleRange ReadRange(Value const& range) {
  IStoreTuple const& tuple = RangeUtilities::GetTuple(range);
  RangeUtilities::Ends const ends = RangeUtilities::GetEnds(tuple);
  int const mode = RangeUtilities::GetModeCode(tuple);
  ScaleRange read = {kMissing,
                     kMissing,
                     RangeUtilities::FixesMinimum(mode),
                     RangeUtilities::FixesMaximum(mode),
                     RangeUtilities::IsLog(tuple),
                     RangeUtilities::GetFieldType(tuple)};
  read.minimum = read.ToScale(ReadNumber(ends.minimum));
  read.maximum = read.ToScale(ReadNumber(ends.maximum));
  if (read.maximum < read.minimum) {
    std::swap(read.minimum, read.maximum);
    std::swap(read.fixesMinimum, read.fixesMaximum);
  }
  read.fixesMinimum = read.fixesMinimum && !std::isnan(read.minimum);
  read.fixesMaximum = read.fixesMaximum && !std::isnan(read.maximum);
  return read;
}

Value MakeRange(ScaleRange const& range, Value const& source, bool keepsLogarithms) {
  ScaleRange const before = ReadRange(source);
  bool const isSame = IsSame(range.minimum, before.minimum) && IsSame(range.maximum, before.maximum);
  if (isSame && !(range.isLog && keepsLogarithms)) return source;
  IStoreTuple const& tuple = source->AsTuple();
  RangeUtilities::Ends ends = RangeUtilities::GetEnds(tuple);
  bool const wasInverted = before.IsComplete() && before.ToScale(ReadNumber(ends.maximum)) < before.maximum;
  if (wasInverted) std::swap(ends.minimum, ends.maximum);
  return RangeUtilities::MakeRange(
      {MakeEnd(range.minimum, before.minimum, ends.minimum, range, keepsLogarithms),
       MakeEnd(range.maximum, before.maximum, ends.maximum, range, keepsLogarithms)},
      tuple);
}

RangeColumn::RangeColumn(Value const& column) : column_(column) {
  detail::RequireColumnOf(StoreType::Tuple, column_);
  auto const& tuples = column_->AsTypedArray<Value>();
  ranges_.reserve(static_cast<std::size_t>(tuples.GetCount()));
  for (int row = 0; row < tuples.GetCount(); ++row)
    ranges_.push_back(tuples.IsSpecial(row) ? MakeEmpty() : ReadRange(tuples.GetElement(row)));
}

bool RangeColumn::IsSpecial(std::size_t row) const {
  return column_->AsTypedArray<Value>().IsSpecial(static_cast<int>(row));
}

Value RangeColumn::MakeEach(
    std::function<Value(std::size_t, ScaleRange const&, Value const&)> const& make) const {
  auto const& tuples = column_->AsTypedArray<Value>();
  auto column = factory::MakeColumnBuilder<Value>(StoreTypeInfo::Tuple, tuples.GetCount());
  for (int row = 0; row < tuples.GetCount(); ++row) {
    auto const place = static_cast<std::size_t>(row);
    if (tuples.IsSpecial(row)) {
      column.SetSpecial(row, tuples.GetSpecialKind(row));
    } else {
      column.GetValues()[place] = make(place, ranges_[place], tuples.GetElement(row));
    }
  }
  return column.Finish();
}

Value RangeColumn::Make(std::span<ScaleRange const> ranges, bool keepsLogarithms) const {
  return MakeEach([&](std::size_t row, ScaleRange const&, Value const& source) {
    return MakeRange(ranges[row], source, keepsLogarithms);
  });
}

NumberColumn::NumberColumn(Value const& column) : column_(column) {
  detail::RequireColumnOf(StoreType::Real64, column_);
  auto const& numbers = column_->AsTypedArray<double>();
  rows_ = numbers.GetValues();
  if (!numbers.HasSpecials()) return;
  withoutSpecials_.assign(rows_.begin(), rows_.end());
  for (int const row : numbers.GetSpecialRows()) withoutSpecials_[static_cast<std::size_t>(row)] = kMissing;
  rows_ = withoutSpecials_;
}

std::vector<int64> ReadIntegers(Value const& column) {
  detail::RequireValue(column);
  if (column->GetTypeInfo().GetElementType() == StoreType::Int64) {
    auto const rows = column->AsTypedArray<int64>().GetValues();
    return {rows.begin(), rows.end()};
  }
  detail::RequireColumnOf(StoreType::Int32, column);
  auto const rows = column->AsTypedArray<int>().GetValues();
  return {rows.begin(), rows.end()};
}

std::vector<bool> ReadFlags(Value const& column) {
  detail::RequireColumnOf(StoreType::Bool, column);
  auto const rows = column->AsTypedArray<bool>().GetValues();
  return {rows.begin(), rows.end()};
}

void RequireCount(std::size_t count, std::size_t wanted, wchar_t const* name) {
  if (count == wanted) return;
  throw OrtRuntimeException(OrtError_LengthsDiffer, RFormatString(L"%1 has %2 rows, %3 needed")
                                                        .arg(OStringCore(name, -1))
                                                        .arg(uint64{count}, 0, 10, L' ')
                                                        .arg(uint64{wanted}, 0, 10, L' '));
}

void Refuse(wchar_t const* name, wchar_t const* need) {
  throw OrtRuntimeException(
      OrtError_InputKindNotAccepted,
      RFormatString(L"%1 must be %2").arg(OStringCore(name, -1)).arg(OStringCore(need, -1)));
}

void RequireNotNegative(double number, wchar_t const* name) {
  if (!(number >= 0 && std::isfinite(number))) Refuse(name, L"finite and not negative");
}

}  // namespace OstrelTransforms
