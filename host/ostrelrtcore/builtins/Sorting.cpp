#include "ostrelrtcore/builtins/RowOrder.h"

/// Order of rows as RowOrder.h tells it: NaN after all numbers and special rows last in both directions,
/// equal rows in the order in which they stand.
namespace ort::core::builtins {
namespace {

/// Columns, each of which a Bool may follow that is true for descending order.
std::vector<SortColumn> ReadSortColumns(Values const& inputs) {
  std::vector<SortColumn> columns;
  bool takesFlag = false;
  for (Value const& input : inputs) {
    if (IsColumn(*input)) {
      columns.push_back({input, false});
      takesFlag = true;
    } else if (takesFlag) {
      columns.back().isDescending = FetchStoreValue<bool>(input);
      takesFlag = false;
    } else {
      ThrowError(OrtError_WrongValueKind, "columns wanted, each with one Bool behind it or none");
    }
  }
  return columns;
}

Value SortIndices(Values const& inputs) { return SortRows(ReadSortColumns(inputs)).Finish(); }

Value Rank(Values const& inputs) {
  auto const columns = ReadSortColumns(inputs);
  if (columns.size() != 1) ThrowError(OrtError_WrongInputCount, "one column wanted");
  auto order = SortRows(columns);
  auto const rows = order.GetValues();
  auto const words = OrderWords(columns[0]);
  RowKinds const kinds(columns[0].column->AsColumn());
  auto ranks = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, static_cast<int>(rows.size()));
  int rank = 0;
  for (std::size_t place = 0; place < rows.size(); ++place) {
    auto const row = static_cast<std::size_t>(rows[place]);
    bool const isTied = place > 0 && words[row] == words[static_cast<std::size_t>(rows[place - 1])];
    if (!isTied) rank = static_cast<int>(place) + 1;
    ranks.GetValues()[row] = rank;
    if (kinds[rows[place]] != SpecialKind::None) ranks.SetSpecial(rows[place], kinds[rows[place]]);
  }
  return ranks.Finish();
}

}  // namespace

BuiltinFamily SortingFamily() {
  using enum StoreType;
  return {"sorting",
          {
              {.name = "sortIndices",
               .inputs = {"first", "descending", "others..."},
               .help = "The rows in ascending order, or descending where a true follows the column; further "
                       "columns with or without such a flag order what is equal in those before.",
               .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2, 3, 1]}}, {"Bool": true}])",
               .registrations = {Multinary<SortIndices>({AnyArray(), Segment(Bool), AnyValue()},
                                                        ArrayOf(Int32))}},
              {.name = "rank",
               .inputs = {"values", "descending"},
               .help = "One more than the number of rows that come before the row, equal rows having one "
                       "rank; special rows stay special.",
               .example = R"("inputs": [{"Array": {"type": "Real64", "values": [2, 3, 2]}}, {"Bool": true}])",
               .registrations = {Multinary<Rank>({AnyArray(), Segment(Bool)}, ArrayOf(Int32))}},
          }};
}

}  // namespace ort::core::builtins
