#include "ostreltransforms/setvaluemulti/AxisFunctions.h"

#include <algorithm>
#include <array>

#include "ostrelrtcore/Factory.h"
#include "ostreltransforms/RangeUtilities.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/map/ColumnParameter.h"
#include "ostreltransforms/setvaluemulti/AxisExtents.h"

namespace OstrelTransforms {
namespace {

using namespace ort::core;
using AxisExtents::Extents;

double ReadEnd(Value const& end) {
  return end->IsSpecial() ? 0.0 : StoreValueOperators::ConvertToDouble(*end);
}

// The extents of all axes, and behind them those of rows that name none.
class ExtentsTable {
 public:
  ExtentsTable(Value const& domains, Value const& ranges, Value const& reversed, bool fallsBackUpright) {
    auto const& domainTuples = domains->AsTypedArray<Value>();
    auto const& rangeTuples = ranges->AsTypedArray<Value>();
    detail::RequireColumnOf(StoreType::Bool, reversed);
    auto const& flags = reversed->AsTypedArray<bool>();
    int const count = domainTuples.GetCount();
    if (rangeTuples.GetCount() < count || flags.GetCount() < count) {
      throw OrtRuntimeException(OrtError_WrongValueKind,
                                OStringCore(L"there are fewer ranges or reversed flags than axes"));
    }
    axes_.reserve(static_cast<std::size_t>(count) + 1);
    for (int axis = 0; axis < count; ++axis) {
      axes_.push_back(
          MakeExtents(domainTuples.GetElement(axis), rangeTuples.GetElement(axis), flags.GetElement(axis)));
    }
    axes_.push_back(fallsBackUpright ? Extents{0, 1, 0, 0, 0} : Extents{1, 0, 0, 0, 0});
  }

  std::uint64_t GetCount() const { return axes_.size() - 1; }
  Extents const* GetData() const { return axes_.data(); }

 private:
  static Extents MakeExtents(Value const& domain, Value const& range, bool isReversed) {
    IStoreTuple const& tuple = RangeUtilities::GetTuple(domain);
    RangeUtilities::Ends const ends = RangeUtilities::GetEnds(tuple);
    RangeUtilities::Ends const wanted = RangeUtilities::GetEnds(RangeUtilities::GetTuple(range));
    return AxisExtents::Compute({.minimum = ReadEnd(ends.minimum),
                                 .maximum = ReadEnd(ends.maximum),
                                 .modeCode = RangeUtilities::GetModeCode(tuple),
                                 .fieldType = RangeUtilities::GetFieldType(tuple),
                                 .isLog = RangeUtilities::IsLog(tuple),
                                 .isReversed = isReversed,
                                 .rangeStart = ReadEnd(wanted.minimum),
                                 .rangeEnd = ReadEnd(wanted.maximum)});
  }

  std::vector<Extents> axes_;
};

struct Output {
  wchar_t const* name;
  double Extents::*member;
};
constexpr Output kOutputs[] = {{L"minResult", &Extents::low},
                               {L"maxResult", &Extents::high},
                               {L"zeroResult", &Extents::zero},
                               {L"minRangeResult", &Extents::domainMinimum},
                               {L"maxRangeResult", &Extents::domainMaximum}};
constexpr std::size_t kOutputCount = std::size(kOutputs);

template <class Index>
Value MakeColumns(ExtentsTable const& table, Value const& axes) {
  auto const& indices = axes->AsTypedArray<Index>();
  int const count = indices.GetCount();
  auto const makeColumn = [&] { return factory::MakeColumnBuilder<double>(StoreTypeInfo::Real64, count); };
  std::array columns = {makeColumn(), makeColumn(), makeColumn(), makeColumn(), makeColumn()};
  static_assert(columns.size() == kOutputCount);
  std::array<double*, kOutputCount> out;
  for (std::size_t i = 0; i < kOutputCount; ++i) out[i] = columns[i].GetValues().data();

  Extents const* const extents = table.GetData();
  std::uint64_t const fallback = table.GetCount();
  auto const write = [&](std::size_t row, std::uint64_t axis) {
    Extents const& found = extents[std::min(axis, fallback)];
    for (std::size_t i = 0; i < kOutputCount; ++i) out[i][row] = found.*kOutputs[i].member;
  };
  std::span<Index const> const rows = indices.GetValues();
  // A negative position becomes one past the end.
  for (std::size_t row = 0; row < rows.size(); ++row) write(row, static_cast<std::uint64_t>(rows[row]));
  if (indices.HasSpecials()) {
    for (int const row : indices.GetSpecialRows()) write(static_cast<std::size_t>(row), fallback);
  }

  factory::NamedValues result;
  for (std::size_t i = 0; i < kOutputCount; ++i) result.emplace(kOutputs[i].name, columns[i].Finish());
  return factory::MakeKeyMap(std::move(result));
}

}  // namespace

Value ComputeAxisExtents(std::vector<Value> const& inputs) {
  constexpr std::size_t kInputCount = 5;
  if (inputs.size() != kInputCount) throw OrtRuntimeException(OrtError_WrongInputCount);
  for (Value const& input : inputs) detail::RequireValue(input);
  ExtentsTable const table(inputs[0], inputs[1], inputs[2], FetchStoreValue<bool>(inputs[4]));
  Value const& axes = inputs[3];
  if (axes->GetTypeInfo().GetElementType() == StoreType::Int64) return MakeColumns<int64>(table, axes);
  detail::RequireColumnOf(StoreType::Int32, axes);
  return MakeColumns<int>(table, axes);
}

}  // namespace OstrelTransforms
