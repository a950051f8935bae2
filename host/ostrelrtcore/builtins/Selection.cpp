#include <limits>
#include <numeric>

#include "ostrelrtcore/builtins/Columns.h"

/// Choosing rows of columns and of whole tables. Special rows are chosen like others and keep their kinds;
/// columns of every element type are served.
namespace ort::core::builtins {
namespace {

/// The rows whose mask is true. A special row of the mask is not true, for its slot holds zero.
ColumnBuilder<int> TrueRows(StoreValue const& mask) {
  RequireColumn(mask, StoreType::Bool, "mask");
  auto const bytes = mask.AsTypedArray<uint8>().GetValues();
  auto const kept = std::accumulate(bytes.begin(), bytes.end(), 0);
  auto rows = factory::MakeColumnBuilder<int>(StoreTypeInfo::Int32, kept);
  auto const out = rows.GetValues();
  std::size_t next = 0;
  for (std::size_t row = 0; next < out.size(); ++row) {
    out[next] = static_cast<int>(row);
    next += bytes[row];
  }
  return rows;
}

Value FilterColumn(Value const& column, Value const& mask) {
  auto rows = TrueRows(*mask);
  RequireOneLength(column->AsColumn().GetCount(), mask->AsColumn().GetCount(), "mask");
  return TakeRows(column, rows.GetValues());
}

Value FilterTable(Value const& table, Value const& mask) {
  auto rows = TrueRows(*mask);
  RequireOneLength(CountTableRows(*table), mask->AsColumn().GetCount(), "mask");
  return MapTable(*table, [&](Value const& column) { return TakeRows(column, rows.GetValues()); });
}

Value TakeFromColumn(Value const& column, Value const& rows) {
  RequireColumn(*rows, StoreType::Int32, "rows");
  return TakeRows(column, *rows);
}

Value TakeFromTable(Value const& table, Value const& rows) {
  RequireColumn(*rows, StoreType::Int32, "rows");
  return MapTable(*table, [&](Value const& column) { return TakeRows(column, *rows); });
}

std::vector<int> FirstRows(int count, int wanted) {
  std::vector<int> rows(static_cast<std::size_t>(std::clamp(wanted, 0, count)));
  std::iota(rows.begin(), rows.end(), 0);
  return rows;
}

Value HeadOfColumn(Value const& column, Value const& wanted) {
  return TakeRows(column, FirstRows(column->AsColumn().GetCount(), FetchStoreValue<int>(wanted)));
}

Value HeadOfTable(Value const& table, Value const& wanted) {
  auto const rows = FirstRows(CountTableRows(*table), FetchStoreValue<int>(wanted));
  return MapTable(*table, [&](Value const& column) { return TakeRows(column, rows); });
}

std::vector<int> BackwardRows(int count) {
  std::vector<int> rows(static_cast<std::size_t>(count));
  std::iota(rows.rbegin(), rows.rend(), 0);
  return rows;
}

Value ReverseColumn(Value const& column) {
  return TakeRows(column, BackwardRows(column->AsColumn().GetCount()));
}

Value ReverseTable(Value const& table) {
  auto const rows = BackwardRows(CountTableRows(*table));
  return MapTable(*table, [&](Value const& column) { return TakeRows(column, rows); });
}

int CountAllRows(Values const& columns) {
  if (columns.empty()) ThrowError(OrtError_WrongInputCount, "one column or more wanted");
  int64 total = 0;
  for (Value const& column : columns) {
    total += column->AsColumn().GetCount();
    if (ElementType(*column) != ElementType(*columns[0])) {
      ThrowError(OrtError_TypesDiffer, StoreTypeToString(ElementType(*columns[0])).toUtf8() + " and " +
                                           StoreTypeToString(ElementType(*column)).toUtf8());
    }
  }
  if (total > std::numeric_limits<int>::max()) {
    ThrowError(OrtError_WrongValueKind, std::to_string(total) + " rows");
  }
  return static_cast<int>(total);
}

Value Concatenate(Values const& columns) {
  int const count = CountAllRows(columns);
  return VisitStorage(columns[0]->AsColumn().GetStorage(), [&]<class T>() {
    auto builder = factory::MakeColumnBuilder<T>(ElementInfo(*columns[0]), count);
    auto out = builder.GetValues().begin();
    int first = 0;
    for (Value const& column : columns) {
      ITypedArray<T> const& source = column->AsTypedArray<T>();
      out = std::ranges::copy(source.GetValues(), out).out;
      if (source.HasSpecials()) {
        auto const rows = source.GetSpecialRows();
        auto const kinds = source.GetSpecialKinds();
        for (std::size_t i = 0; i < rows.size(); ++i) builder.SetSpecial(first + rows[i], kinds[i]);
      }
      first += source.GetCount();
    }
    return builder.Finish();
  });
}

Value Choose(Value const& mask, Value const& whenTrue, Value const& whenFalse) {
  int const count = RequireColumn(*mask, StoreType::Bool, "mask").GetCount();
  Value const sources[] = {AsColumn(whenFalse, count, "whenFalse"), AsColumn(whenTrue, count, "whenTrue")};
  if (ElementType(*sources[0]) != ElementType(*sources[1])) {
    ThrowError(OrtError_TypesDiffer, StoreTypeToString(ElementType(*sources[1])).toUtf8() + " and " +
                                         StoreTypeToString(ElementType(*sources[0])).toUtf8());
  }
  RowKinds const maskKinds(mask->AsColumn());
  RowKinds const kinds[] = {RowKinds(sources[0]->AsColumn()), RowKinds(sources[1]->AsColumn())};
  return VisitStorage(sources[0]->AsColumn().GetStorage(), [&]<class T>() {
    auto builder = factory::MakeColumnBuilder<T>(ElementInfo(*sources[0]), count);
    auto const choices = mask->AsTypedArray<uint8>().GetValues();
    std::span<T const> const values[] = {sources[0]->AsTypedArray<T>().GetValues(),
                                         sources[1]->AsTypedArray<T>().GetValues()};
    auto const out = builder.GetValues();
    for (std::size_t row = 0; row < out.size(); ++row) {
      out[row] = choices[row] != 0 ? values[1][row] : values[0][row];
    }
    if (maskKinds.HasSpecials() || kinds[0].HasSpecials() || kinds[1].HasSpecials()) {
      for (int row = 0; row < count; ++row) {
        SpecialKind const own = maskKinds[row];
        SpecialKind const chosen = kinds[choices[static_cast<std::size_t>(row)]][row];
        if (own != SpecialKind::None || chosen != SpecialKind::None) {
          builder.SetSpecial(row, own != SpecialKind::None ? own : chosen);
        }
      }
    }
    return builder.Finish();
  });
}

Value CountColumn(Value const& column) { return factory::MakeInt32(column->AsColumn().GetCount()); }
Value CountTable(Value const& table) { return factory::MakeInt32(CountTableRows(*table)); }

Value Element(Value const& column, Value const& row) { return ElementAt(column, FetchStoreValue<int>(row)); }

}  // namespace

BuiltinFamily SelectionFamily() {
  using enum StoreType;
  auto const table = Segment(Table);
  auto const count = Segment(Int32);
  return {
      "selection",
      {
          {.name = "filter",
           .inputs = {"values", "mask"},
           .help =
               "The rows of a column or table whose mask is true; a special row of the mask drops its row.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2, 3]}}, )"
                      R"({"Array": {"type": "Bool", "values": [true, false, true]}}])",
           .registrations = {Multinary<FilterColumn>({AnyArray(), ArrayOf(Bool)}, AnyArray()),
                             Multinary<FilterTable>({table, ArrayOf(Bool)}, table)}},
          {.name = "take",
           .inputs = {"values", "rows"},
           .help = "The named rows of a column or table, counted from 0; a special row among them stays "
                   "special, and one outside throws 55.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["a", "b"]}}, )"
                      R"({"Array": {"type": "Int32", "values": [1, 1, 0]}}])",
           .registrations = {Multinary<TakeFromColumn>({AnyArray(), ArrayOf(Int32)}, AnyArray()),
                             Multinary<TakeFromTable>({table, ArrayOf(Int32)}, table)}},
          {.name = "head",
           .inputs = {"values", "count"},
           .help = "The first rows of a column or table, at most as many as there are; none for a negative "
                   "count.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [7, 8, 9]}}, {"Int32": 2}])",
           .registrations = {Multinary<HeadOfColumn>({AnyArray(), count}, AnyArray()),
                             Multinary<HeadOfTable>({table, count}, table)}},
          {.name = "reverse",
           .inputs = {"values"},
           .help = "The rows of a column or table from last to first.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [7, 8, 9]}}])",
           .registrations = {Multinary<ReverseColumn>({AnyArray()}, AnyArray()),
                             Multinary<ReverseTable>({table}, table)}},
          {.name = "concatenate",
           .inputs = {"first", "others..."},
           .help =
               "The rows of one or more columns of one element type (else 220), one column after the other.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [1]}}, )"
                      R"({"Array": {"type": "Int32", "values": [2, 3]}}])",
           .registrations = {Multinary<Concatenate>({AnyArray(), AnyArray()}, AnyArray())}},
          {.name = "choose",
           .inputs = {"mask", "whenTrue", "whenFalse"},
           .help = "Row by row the second input where the mask is true, else the third, each a column or one "
                   "value of the same type (else 220); a special row of the mask stays special.",
           .example = R"("inputs": [{"Array": {"type": "Bool", "values": [true, false]}}, )"
                      R"({"Array": {"type": "Int32", "values": [1, 2]}}, {"Int32": 0}])",
           .registrations = {Multinary<Choose>({ArrayOf(Bool), AnyArray(), AnyArray()}, AnyArray())}},
          {.name = "count",
           .inputs = {"values"},
           .help = "The number of rows of a column or table, special rows included.",
           .example = R"("inputs": [{"Array": {"type": "Int32", "values": [7, 8, 9]}}])",
           .registrations = {Multinary<CountColumn>({AnyArray()}, count),
                             Multinary<CountTable>({table}, count)}},
          {.name = "element",
           .inputs = {"values", "row"},
           .help = "One row of a column as a value of its own; a row outside the column throws 55.",
           .example = R"("inputs": [{"Array": {"type": "String", "values": ["a", "b"]}}, {"Int32": 1}])",
           .registrations = {Multinary<Element>({AnyArray(), count}, AnyValue())}},
      }};
}

}  // namespace ort::core::builtins
