#include "ostrelrtcore/builtins/Columns.h"

/// Making columns, tuples and tables out of values, and taking them apart again. Special values stay special
/// members.
namespace ort::core::builtins {
namespace {

/// A longer sequence is a mistake in the request rather than a column of a chart.
constexpr int kMaxSequence = 100'000'000;

Value Repeat(Value const& value, Value const& count) {
  return RepeatValue(value, FetchStoreValue<int>(count));
}

/// Each row is computed from its number, so that errors don't add up.
template <class T>
Value Sequence(Value const& start, Value const& step, Value const& count) {
  int const rows = FetchStoreValue<int>(count);
  if (rows < 0 || rows > kMaxSequence) {
    ThrowError(OrtError_WrongValueKind, "a sequence of " + std::to_string(rows) + " rows");
  }
  using Number = std::conditional_t<std::is_integral_v<T>, unsigned, T>;
  auto const first = static_cast<Number>(FetchStoreValue<T>(start));
  auto const distance = static_cast<Number>(FetchStoreValue<T>(step));
  auto builder = factory::MakeColumnBuilder<T>({ElementTraits<T>::kStoreType, false}, rows);
  auto const out = builder.GetValues();
  for (int row = 0; row < rows; ++row) {
    out[static_cast<std::size_t>(row)] = static_cast<T>(first + distance * static_cast<Number>(row));
  }
  return builder.Finish();
}

Value MakeTuple(Values const& members) { return factory::MakeTuple(members); }

Value ZipTuples(Values const& columns) {
  if (columns.empty()) ThrowError(OrtError_WrongInputCount, "one column or more wanted");
  int const count = columns[0]->AsColumn().GetCount();
  for (Value const& column : columns) RequireOneLength(count, column->AsColumn().GetCount(), "columns");
  auto builder = factory::MakeColumnBuilder<Value>(StoreTypeInfo::Tuple, count);
  for (int row = 0; row < count; ++row) {
    Values members;
    members.reserve(columns.size());
    for (Value const& column : columns) members.push_back(ElementAt(column, row));
    builder.GetValues()[static_cast<std::size_t>(row)] = factory::MakeTuple(std::move(members));
  }
  return builder.Finish();
}

Value MakeTable(Values const& namesAndColumns) {
  if (namesAndColumns.size() % 2 != 0) {
    ThrowError(OrtError_WrongInputCount, "a name and a column for each column wanted");
  }
  factory::NamedValues columns;
  for (std::size_t i = 0; i < namesAndColumns.size(); i += 2) {
    auto const name = FetchStoreValue<OStringCore>(namesAndColumns[i]);
    RequireOneLength(namesAndColumns[1]->AsColumn().GetCount(), namesAndColumns[i + 1]->AsColumn().GetCount(),
                     name.toUtf8().c_str());
    if (!columns.emplace(name, namesAndColumns[i + 1]).second) {
      ThrowError(OrtError_WrongValueKind, "two columns named " + name.toUtf8());
    }
  }
  return factory::MakeTable(std::move(columns));
}

Value NamedMember(Value const& values, Value const& name) {
  return values->AsNamedValues().Get(FetchStoreValue<OStringCore>(name));
}

Value TupleMember(Value const& tuple, Value const& position) {
  return tuple->AsTuple().GetMember(FetchStoreValue<int>(position));
}

}  // namespace

BuiltinFamily ConstructionFamily() {
  using enum StoreType;
  return {
      "construction",
      {
          {.name = "repeat",
           .inputs = {"value", "count"},
           .help = "A column of equal rows, of a value of any type.",
           .example = R"("inputs": [{"Real64": 1.5}, {"Int32": 3}])",
           .registrations = {Multinary<Repeat>({AnyValue(), Segment(Int32)}, AnyArray())}},
          {.name = "sequence",
           .inputs = {"start", "step", "count"},
           .help = "The numbers start + step * row for as many rows as asked for, at most 10^8 (else 55); "
                   "integers wrap around.",
           .example = R"("inputs": [{"Real64": 0}, {"Real64": 0.5}, {"Int32": 4}])",
           .registrations = {Multinary<Sequence<double>>({Segment(Real64), Segment(Real64), Segment(Int32)},
                                                         ArrayOf(Real64)),
                             Multinary<Sequence<int>>({Segment(Int32), Segment(Int32), Segment(Int32)},
                                                      ArrayOf(Int32))}},
          {.name = "makeTuple",
           .inputs = {"first", "others..."},
           .help = "A tuple of values of any types, none included.",
           .example = R"("inputs": [{"Real64": 1.5}, {"String": "a"}])",
           .registrations = {Multinary<MakeTuple>({AnyValue(), AnyValue()}, Segment(Tuple))}},
          {.name = "zipTuples",
           .inputs = {"first", "others..."},
           .help =
               "A column of tuples, each of one row of all columns; a special row becomes a special member.",
           .example = R"("inputs": [{"Array": {"type": "Real64", "values": [1, 2]}}, )"
                      R"({"Array": {"type": "String", "values": ["a", "b"]}}])",
           .registrations = {Multinary<ZipTuples>({AnyArray(), AnyArray()}, ArrayOf(Tuple))}},
          {.name = "makeTable",
           .inputs = {"name", "column", "others..."},
           .help =
               "A table of columns of one length (else 259), each after its name; two equal names throw 55.",
           .example = R"("inputs": [{"String": "x"}, {"Array": {"type": "Real64", "values": [1, 2]}}, )"
                      R"({"String": "y"}, {"Array": {"type": "Real64", "values": [3, 4]}}])",
           .registrations = {Multinary<MakeTable>({Segment(String), AnyArray(), AnyValue()},
                                                  Segment(Table))}},
          {.name = "member",
           .inputs = {"values", "key"},
           .help = "A table's column or a key map's member by its name, or a tuple's by its position from 0; "
                   "219 when there is none.",
           .example = R"("inputs": [{"KeyMap": {"x": {"Real64": 1.5}}}, {"String": "x"}])",
           .registrations = {Multinary<NamedMember>({Segment(Table), Segment(String)}, AnyValue()),
                             Multinary<NamedMember>({Segment(KeyMap), Segment(String)}, AnyValue()),
                             Multinary<TupleMember>({Segment(Tuple), Segment(Int32)}, AnyValue())}},
      }};
}

}  // namespace ort::core::builtins
