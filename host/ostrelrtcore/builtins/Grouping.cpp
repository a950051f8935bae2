#include "ostrelrtcore/builtins/RowNumbers.h"
#include "ostrelrtcore/builtins/RowOrder.h"

/// Groups of equal rows. Values are told apart as StoreValue::Equals does: NaN equals NaN, both zeros are
/// equal, and special rows of one kind are a group of their own. Every element type is served.
namespace ort::core::builtins {
namespace {

Value GroupIndex(Values const& columns) { return GroupRows(columns).groups.Finish(); }

Value Distinct(Value const& column) { return TakeRows(column, GroupRows({&column, 1}).firstRows); }

Value DistinctSorted(Value const& column) {
  Value const distinct = Distinct(column);
  SortColumn const sorted[] = {{distinct, false}};
  return TakeRows(distinct, SortRows(sorted).GetValues());
}

Value IndexIn(Value const& values, Value const& domain) {
  if (!IsColumn(*values) || !IsColumn(*domain) || ElementType(*values) != ElementType(*domain)) {
    ThrowError(OrtError_TypesDiffer, "values and domain are no columns of one element type");
  }
  RowNumbers numbers;
  std::vector<int> firstRows;
  numbers.Number(*domain, [&](int row, int number) {
    if (static_cast<std::size_t>(number) == firstRows.size()) firstRows.push_back(row);
  });
  auto found = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, values->AsColumn().GetCount());
  numbers.Find(*values, [&, out = found.GetValues().data()](int row, int number) {
    out[row] = number < 0 ? 0 : firstRows[static_cast<std::size_t>(number)];
    if (number < 0) found.SetSpecial(row, SpecialKind::Missing);
  });
  return found.Finish();
}

int CountSpecials(ColumnView const& column) {
  if (column.GetUniformSpecialKind() != SpecialKind::None) return column.GetCount();
  return static_cast<int>(column.GetSpecialRows().size());
}

Value CountOrdinary(Value const& column) {
  ColumnView const& view = column->AsColumn();
  return factory::MakeInt32(view.GetCount() - CountSpecials(view));
}

Value CountDistinct(Value const& column) {
  RowNumbers numbers;
  numbers.Number(*column, [](int, int) {});
  RowKinds const kinds(column->AsColumn());
  std::array<bool, 256> isMet{};
  int specials = 0;
  for (int row = 0; kinds.HasSpecials() && row < column->AsColumn().GetCount(); ++row) {
    bool& met = isMet[static_cast<std::size_t>(kinds[row])];
    specials += kinds[row] != SpecialKind::None && !std::exchange(met, true);
  }
  return factory::MakeInt32(numbers.GetCount() - specials);
}

}  // namespace

BuiltinFamily GroupingFamily() {
  using enum StoreType;
  return {
      "grouping",
      {
          {.name = "groupIndex",
           .inputs = {"first", "others..."},
           .help = "Of each row the number of its group, counted from 0 in order of first appearance; rows "
                   "are in one group when they are equal in all columns.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["b", "a", "b"]}}])",
           .registrations = {Multinary<GroupIndex>({AnyArray(), AnyArray()}, ArrayOf(Int32))}},
          {.name = "distinct",
           .inputs = {"values"},
           .help = "The different values in order of first appearance, special ones included: row g is group "
                   "g of groupIndex.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["b", "a", "b"]}}])",
           .registrations = {Multinary<Distinct>({AnyArray()}, AnyArray())}},
          {.name = "distinctSorted",
           .inputs = {"values"},
           .help = "The different values in the ascending order of sortIndices.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["b", "a", "b"]}}])",
           .registrations = {Multinary<DistinctSorted>({AnyArray()}, AnyArray())}},
          {.name = "indexIn",
           .inputs = {"values", "domain"},
           .help = "Of each value the first row of the domain that is equal to it; a special row of kind 1 "
                   "where there is none.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["b", "x"]}}, )"
                      R"({"Array": {"type": "String", "values": ["a", "b"]}}])",
           .registrations = {Multinary<IndexIn>({AnyArray(), AnyArray()}, ArrayOf(Int32))}},
          {.name = "countOrdinary",
           .inputs = {"values"},
           .help = "The number of rows that are not special.",
           .example =
               R"("inputs": [{"Array": {"type": "Real64", "values": [1, null], "specials": [[1, 9]]}}])",
           .registrations = {Multinary<CountOrdinary>({AnyArray()}, Segment(Int32))}},
          {.name = "countDistinct",
           .inputs = {"values"},
           .help = "The number of different values, special rows left out.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["b", "a", "b"]}}])",
           .registrations = {Multinary<CountDistinct>({AnyArray()}, Segment(Int32))}},
      }};
}

}  // namespace ort::core::builtins
