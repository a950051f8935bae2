#include <gtest/gtest.h>

#include <cmath>

#include "ostrelrtcore/FunctionDocumentation.h"
#include "ostrelrtcore/builtins/Lines.h"

namespace builtins_test {
namespace {

using namespace ort::core;

TEST(BuiltinArithmetic, WrapsIntegersAndFollowsIeeeForReals) {
  RunCases({
      {"add", {"Int32: 2147483647 -3 <9>", "Int32 1"}, "Int32: -2147483648 -2 <9>"},
      {"add",
       {"Int64 9223372036854775807", "Int64: 1 -1"},
       "Int64: -9223372036854775808 9223372036854775806"},
      {"add", {"Real64: 0.1 inf NaN", "Real64: 0.2 -inf 1"}, "Real64: 0.30000000000000004 NaN NaN"},
      {"add", {"Real32: 16777216", "Real32: 1"}, "Real32: 16777216"},
      {"subtract", {"Int32: -2147483648", "Int32: 1"}, "Int32: 2147483647"},
      {"subtract", {"Real64: 1 <1> <9>", "Real64: 3 4 <1>"}, "Real64: -2 <1> <9>"},
      {"multiply", {"Int32: 65536 -7", "Int32: 65536 6"}, "Int32: 0 -42"},
      {"multiply", {"Int64: 4294967296", "Int64: 4294967297"}, "Int64: 4294967296"},
      {"multiply", {"Real64: 1e200 0", "Real64: 1e200 inf"}, "Real64: Infinity NaN"},
      {"divide", {"Real64: 1 -1 0 7", "Real64: 0 0 0 2"}, "Real64: Infinity -Infinity NaN 3.5"},
      {"divide", {"Int32 1", "Int32 0"}, "no candidate"},
      {"remainder", {"Real64: -7.5 7.5 1 1", "Real64: 2 -2 0 inf"}, "Real64: -1.5 1.5 NaN 1"},
      {"power", {"Real64: 2 -8 0 2", "Real64: 10 0.5 0 -1"}, "Real64: 1024 NaN 1 0.5"},
      {"negate", {"Int32: 5 -2147483648 <1>"}, "Int32: -5 -2147483648 <1>"},
      {"negate", {"Real64: 0 -2.5"}, "Real64: -0 2.5"},
      {"sqrt", {"Real64: 2.25 -1 inf"}, "Real64: 1.5 NaN Infinity"},
      {"floor", {"Real64: -0.5 2.9 NaN 1e300"}, "Real64: -1 2 NaN 1e+300"},
      {"ceil", {"Real64: -0.5 2.1 <9>"}, "Real64: -0 3 <9>"},
      {"log10", {"Real64: 1000 0 -1"}, "Real64: 3 -Infinity NaN"},
      {"add", {"Real64: 1 2", "Real64: 1"}, "error 259: columns differ in length"},
      {"add", {"Real64:", "Real64:"}, "Real64:"},
  });
}

TEST(BuiltinComparison, OrdersEachTypeAndNeverANan) {
  RunCases({
      {"less", {"Real64: 1 NaN -inf 0", "Real64: 2 1 NaN -0"}, "Bool: T F F F"},
      {"greaterOrEqual", {"Real64: NaN 0", "Real64: NaN -0"}, "Bool: F T"},
      {"equal", {"Real64: NaN 0 <1>", "Real64: NaN -0 1"}, "Bool: F T <1>"},
      {"notEqual", {"Real64: NaN 0", "Real64: NaN -0"}, "Bool: T F"},
      {"less", {"Int64: 9223372036854775806", "Int64: 9223372036854775807"}, "Bool: T"},
      {"less", {"Int32: -1", "Int32: 1"}, "Bool: T"},
      {"equal", {"String: a '' <9>", "String: a a a"}, "Bool: T F <9>"},
      {"less", {"String: '' B a aa", "String: a a aa a"}, "Bool: T T T F"},
      {"lessOrEqual", {"Date: 2020-03-01 2020-03-02", "Date 2020-03-01"}, "Bool: T F"},
      {"greater", {"DateTime: 2020-03-01T12:00", "DateTime: 2020-03-01"}, "Bool: T"},
      {"equal", {"Color: -1 7", "Color 7"}, "Bool: F T"},
      {"less", {"Bool T", "Bool F"}, "no candidate"},
  });
}

TEST(BuiltinComparison, TheSixRelationsAgreeOnRandomColumns) {
  std::mt19937 random(7);
  for (StoreType const type : ColumnTypes()) {
    if (type == StoreType::Bool || type == StoreType::Color) continue;
    Value const a = RandomColumn(type, 300, true, random);
    Value const b = RandomColumn(type, 300, false, random);
    auto const show = [](Value const& value) { return Show(value); };
    EXPECT_EQ(show(Call("less", {a, b})), show(Call("greater", {b, a})));
    EXPECT_EQ(show(Call("lessOrEqual", {a, b})),
              show(Call("or", {Call("less", {a, b}), Call("equal", {a, b})})));
    EXPECT_EQ(show(Call("greaterOrEqual", {a, b})),
              show(Call("or", {Call("greater", {a, b}), Call("equal", {a, b})})));
    EXPECT_EQ(show(Call("notEqual", {a, b})), show(Call("not", {Call("equal", {a, b})})));
  }
}

TEST(BuiltinLogic, CombinesTruthValuesAndTellsSpecialRows) {
  RunCases({
      {"and", {"Bool: F F T T <1>", "Bool: F T F T T"}, "Bool: F F F T <1>"},
      {"or", {"Bool: F F T T", "Bool: F T F T"}, "Bool: F T T T"},
      {"xor", {"Bool: F F T T", "Bool: F T F T"}, "Bool: F T T F"},
      {"not", {"Bool: F T <9>"}, "Bool: T F <9>"},
      {"isFinite", {"Real64: 1 NaN inf -inf <1>"}, "Bool: T F F F <1>"},
      {"isFinite", {"Real32: 1 inf"}, "Bool: T F"},
      {"isSpecial", {"Real64: 1 <1> <9> NaN"}, "Bool: F T T F"},
      {"isSpecial", {"String: a <200>"}, "Bool: F T"},
      {"isSpecial", {"Date <1>"}, "Bool T"},
      {"isSpecial", {"Bool: T F"}, "Bool: F F"},
      {"replaceSpecial", {"Real64: 1 <1> NaN <9>"}, "Real64: 1 7.5 NaN 7.5", {"Real64 7.5"}},
      {"replaceSpecial", {"String: a <1>"}, "String: a x", {"String x"}},
      {"replaceSpecial", {"DateTime <9>"}, "DateTime 2020-03-01T00:00:00.0000", {"DateTime 2020-03-01"}},
      {"replaceSpecial", {"Int32 1"}, "error 55: value of the wrong kind: 1 parameter(s) wanted, 0 given"},
  });
}

/// Every registered conversion gives what ConvertTo gives for the row.
TEST(BuiltinConversion, FollowsTheRulesOfConvertTo) {
  std::mt19937 random(11);
  int conversions = 0;
  for (auto const& function : GetBuiltinDocumentation()) {
    if (function.family != "conversion") continue;
    ++conversions;
    auto const from = function.inputs[0].GetMainType().GetStoreType();
    auto const to = function.output.GetMainType().GetStoreType();
    Value column = RandomColumn(from, 400, true, random);
    if (from == StoreType::String) {
      column =
          Parse("String: 12 -1.5 1e400 '' x 2020-03-01 1x <9> 99999999999999999999 2020-03-01T10:00 NaN");
    } else if (from == StoreType::Real64) {
      column =
          Call("concatenate", {column, Parse("Real64: 0.5 -0.5 1.5 2147483647.5 9.3e18 -9.3e18 1e39 1e-50")});
    }
    Value const converted = Call(function.name.toUtf8(), {column});
    for (int row = 0; row < CountRows(column); ++row) {
      Value const cell = Call("element", {column, ort::core::factory::MakeInt32(row)});
      EXPECT_EQ(ShowRow(converted, row), Show(cell->ConvertTo(to)).substr(StoreTypeToString(to).length() + 1))
          << function.name << " of " << Show(cell);
    }
  }
  EXPECT_GE(conversions, 25);
}

}  // namespace
}  // namespace builtins_test
