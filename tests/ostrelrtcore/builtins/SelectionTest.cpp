#include <gtest/gtest.h>

#include "ostrelrtcore/builtins/Lines.h"

namespace builtins_test {
namespace {

using namespace ort::core;
using factory::MakeInt32;

TEST(BuiltinSelection, ChoosesRowsWithTheirKinds) {
  RunCases({
      {"filter", {"Real64: 1 2 <9> 4", "Bool: T F T <1>"}, "Real64: 1 <9>"},
      {"filter", {"String: a b", "Bool: F F"}, "String:"},
      {"filter", {"Int32:", "Bool:"}, "Int32:"},
      {"filter", {"Int32: 1 2", "Bool: T"}, "error 259: columns differ in length: mask: 1 rows beside 2"},
      {"filter", {"Int32: 1 2", "Int32: 1 0"}, "no candidate"},
      {"take", {"String: a b <9>", "Int32: 2 0 0 <1> 1"}, "String: <9> a a <1> b"},
      {"take", {"Int32: 5 6", "Int32:"}, "Int32:"},
      {"take", {"Int32: 5 6", "Int32: 2"}, "error 55: value of the wrong kind: row 2 of a column of 2 rows"},
      {"take",
       {"Int32: 5 6", "Int32: <1> -1"},
       "error 55: value of the wrong kind: row -1 of a column of 2 rows"},
      {"head", {"Bool: T <1> F", "Int32 2"}, "Bool: T <1>"},
      {"head", {"Bool: T", "Int32 5"}, "Bool: T"},
      {"head", {"Bool: T", "Int32 -1"}, "Bool:"},
      {"reverse", {"Color: 1 <9> 3"}, "Color: 3 <9> 1"},
      {"concatenate", {"Int64: 1 <1>", "Int64:", "Int64: <9> 2"}, "Int64: 1 <1> <9> 2"},
      {"concatenate", {"Int64: 1"}, "Int64: 1"},
      {"concatenate", {}, "error 219: wrong count of inputs or members: one column or more wanted"},
      {"concatenate",
       {"Int64: 1", "Int32: 1"},
       "error 220: operands are of different types: Int64 and Int32"},
      {"choose",
       {"Bool: T F T F <1>", "Int32: 1 2 <9> 4 5", "Int32: -1 -2 -3 <1> -5"},
       "Int32: 1 -2 <9> <1> <1>"},
      {"choose", {"Bool: T F", "String yes", "String no"}, "String: yes no"},
      {"choose", {"Bool: T F", "Real64 1", "Real64 <9>"}, "Real64: 1 <9>"},
      {"choose",
       {"Bool: T F", "Real64 1", "Int32 2"},
       "error 220: operands are of different types: Real64 and Int32"},
      {"choose",
       {"Bool: T F", "Real64: 1", "Real64 2"},
       "error 259: columns differ in length: whenTrue: 1 rows beside 2"},
      {"count", {"Int32: 1 <1> 2"}, "Int32 3"},
      {"element", {"DateTime: 2020-03-01 <9>", "Int32 0"}, "DateTime 2020-03-01T00:00:00.0000"},
      {"element", {"DateTime: 2020-03-01 <9>", "Int32 1"}, "DateTime <9>"},
      {"element", {"Int32: 1", "Int32 1"}, "error 55: value of the wrong kind: row 1 of a column of 1 rows"},
      {"repeat", {"Real64 1.5", "Int32 3"}, "Real64: 1.5 1.5 1.5"},
      {"repeat", {"String <9>", "Int32 2"}, "String: <9> <9>"},
      {"repeat", {"Bool T", "Int32 0"}, "Bool:"},
      {"repeat", {"Bool T", "Int32 -1"}, "error 55: value of the wrong kind: -1 rows"},
      {"repeat", {"Bool T", "Int32 <1>"}, "error 55: value of the wrong kind: special Int32 read as Int32"},
      {"sequence", {"Real64 1", "Real64 0.1", "Int32 4"}, "Real64: 1 1.1 1.2 1.3"},
      {"sequence", {"Int32 2147483647", "Int32 1", "Int32 2"}, "Int32: 2147483647 -2147483648"},
      {"sequence",
       {"Int32 0", "Int32 1", "Int32 -1"},
       "error 55: value of the wrong kind: a sequence of -1 rows"},
      {"sequence",
       {"Int32 0", "Int32 1", "Int32 100000001"},
       "error 55: value of the wrong kind: a sequence of 100000001 rows"},
      {"makeTuple", {"Real64 1", "String: a b", "Int32 <9>"}, "Tuple(Real64 1, String: a b, Int32 <9>)"},
      {"makeTuple", {}, "Tuple()"},
      {"zipTuples",
       {"Real64: 1 <9>", "String: a b"},
       "Tuple: Tuple(Real64 1, String a) Tuple(Real64 <9>, String b)"},
      {"zipTuples",
       {"Real64: 1", "String:"},
       "error 259: columns differ in length: columns: 0 rows beside 1"},
      {"makeTable", {"String x", "Int32: 1", "String y", "Bool: T"}, "Table{x=Int32: 1, y=Bool: T}"},
      {"makeTable",
       {"String x", "Int32: 1", "String x", "Bool: T"},
       "error 55: value of the wrong kind: two columns named x"},
      {"makeTable",
       {"String x", "Int32: 1", "String y", "Bool:"},
       "error 259: columns differ in length: y: 0 rows beside 1"},
      {"makeTable",
       {"String x"},
       "error 219: wrong count of inputs or members: a name and a column for each column wanted"},
  });
}

TEST(BuiltinSelection, TreatsATableAsItsColumns) {
  std::mt19937 random(3);
  Value const x = RandomColumn(StoreType::Real64, 50, true, random);
  Value const y = RandomColumn(StoreType::String, 50, true, random);
  Value const mask = RandomColumn(StoreType::Bool, 50, true, random);
  Value const rows = RandomRows(80, 50, random);
  auto const table = [](Value const& a, Value const& b) {
    return Call("makeTable", {Parse("String x"), a, Parse("String y"), b});
  };
  std::vector<std::pair<std::string, std::vector<Value>>> const calls = {
      {"filter", {mask}}, {"take", {rows}}, {"head", {MakeInt32(7)}}, {"reverse", {}}};
  for (auto const& [function, further] : calls) {
    auto const apply = [&, &name = function, &rest = further](Value const& values) {
      std::vector<Value> inputs = {values};
      inputs.insert(inputs.end(), rest.begin(), rest.end());
      return Call(name, inputs);
    };
    EXPECT_TRUE(apply(table(x, y))->Equals(*table(apply(x), apply(y)))) << function;
  }
  EXPECT_EQ(ShowCall("count", {table(x, y)}), "Int32 50");
  EXPECT_TRUE(Call("member", {table(x, y), Parse("String y")})->Equals(*y));
  EXPECT_EQ(ShowCall("member", {table(x, y), Parse("String z")}),
            "error 219: wrong count of inputs or members: z");
  Value const tuple = Call("makeTuple", {x, Parse("Int32 4")});
  EXPECT_EQ(ShowCall("member", {tuple, MakeInt32(1)}), "Int32 4");
  EXPECT_EQ(ShowCall("member", {tuple, MakeInt32(2)}).substr(0, 9), "error 219");
  factory::NamedValues const uneven = {{L"x", x}, {L"y", rows}};
  EXPECT_EQ(ShowCall("count", {factory::MakeTable(uneven)}),
            "error 259: columns differ in length: y: 80 rows beside 50");
}

/// Rows one by one against what the functions choose.
TEST(BuiltinSelection, AgreesWithRowByRowModelsForEveryType) {
  std::mt19937 random(5);
  for (StoreType const type : ColumnTypes()) {
    for (int const count : {0, 1, 2, 300}) {
      for (bool const hasSpecials : {false, true}) {
        Value const column = RandomColumn(type, count, hasSpecials, random);
        Value const other = RandomColumn(type, count, hasSpecials, random);
        Value const mask = RandomColumn(StoreType::Bool, count, hasSpecials, random);
        auto const cells = ShowRows(column);
        auto const masks = ShowRows(mask);
        std::vector<std::string> kept;
        std::vector<std::string> chosen;
        for (std::size_t row = 0; row < cells.size(); ++row) {
          if (masks[row] == "T") kept.push_back(cells[row]);
          chosen.push_back(masks[row] == "T"   ? cells[row]
                           : masks[row] == "F" ? ShowRow(other, static_cast<int>(row))
                                               : masks[row]);
        }
        EXPECT_EQ(ShowRows(Call("filter", {column, mask})), kept);
        EXPECT_EQ(ShowRows(Call("choose", {mask, column, other})), chosen);
        auto both = cells;
        for (auto const& cell : ShowRows(other)) both.push_back(cell);
        EXPECT_EQ(ShowRows(Call("concatenate", {column, other})), both);
        EXPECT_TRUE(Call("reverse", {Call("reverse", {column})})->Equals(*column));
        if (count == 0) continue;
        Value const rows = RandomRows(count < 300 ? 2 * count : 3, count, random);
        std::vector<std::string> taken;
        for (auto const& row : ShowRows(rows)) taken.push_back(cells[std::stoul(row)]);
        EXPECT_EQ(ShowRows(Call("take", {column, rows})), taken);
        Value const constant = Call("repeat", {Call("element", {column, MakeInt32(0)}), MakeInt32(count)});
        EXPECT_EQ(ShowRows(Call("filter", {constant, mask})), std::vector(kept.size(), cells[0]));
        EXPECT_EQ(ShowRows(Call("take", {constant, rows})), std::vector(taken.size(), cells[0]));
      }
    }
  }
}

}  // namespace
}  // namespace builtins_test
