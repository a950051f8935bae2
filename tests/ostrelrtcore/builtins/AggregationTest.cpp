#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "ostrelrtcore/builtins/Lines.h"

namespace builtins_test {
namespace {

using namespace ort::core;

TEST(BuiltinAggregation, PassesSpecialRowsOverAndLeavesEmptyGroupsMissing) {
  std::string const groups = "Int32: 0 2 0 <9> 2 0";
  RunCases({
      {"groupCount", {groups}, "Int32: 3 0 2"},
      {"groupCount", {"Int32:"}, "Int32:"},
      {"groupCount", {"Int32: <1> <1>"}, "Int32:"},
      {"groupFirstRow", {groups}, "Int32: 0 <1> 1"},
      {"groupSum", {"Real64: 1 2 4 8 16 <1>", groups}, "Real64: 5 <1> 18"},
      {"groupSum", {"Int32: 2147483647 1 1 1 1 1", groups}, "Int64: 2147483649 <1> 2"},
      {"groupSum", {"Real64: NaN 2 4 8 16 1", groups}, "Real64: NaN <1> 18"},
      {"groupMean", {"Int64: 1 2 4 8 16 <9>", groups}, "Real64: 2.5 <1> 9"},
      {"groupMin", {"Real64: NaN 2 4 8 NaN 3", groups}, "Real64: 3 <1> 2"},
      {"groupMax",
       {"Date: 2020-01-01 2020-01-02 2020-03-01 2021-01-01 <1> 2019-01-01", groups},
       "Date: 2020-03-01 <1> 2020-01-02"},
      {"groupMedian", {"Real32: 1 2 4 8 16 5", groups}, "Real64: 4 <1> 9"},
      {"groupQuantile", {"Real64: 1 2 4 8 16 3", groups, "Real64 0.25"}, "Real64: 2 <1> 5.5"},
      {"groupStdev", {"Real64: 1 2 4 8 <1> 7", groups}, "Real64: 3 <1> <1>"},
      {"groupSum",
       {"Real64: 1", "Int32: 0 1"},
       "error 259: columns differ in length: groups: 2 rows beside 1"},
      {"groupSum", {"Real64: 1", "Int32: -3"}, "error 55: value of the wrong kind: group -3"},
      {"groupSum", {"Real64: 1", "Int32: 2147483647"}, "error 55: value of the wrong kind: group 2147483647"},
      {"groupSum", {"String: a", "Int32: 0"}, "no candidate"},
      {"columnSum", {"Int64: 9223372036854775807 1 <1>"}, "Int64 -9223372036854775808"},
      {"columnSum", {"Real64: <1>"}, "Real64 <1>"},
      {"columnMean", {"Int32: 2147483647 2147483647"}, "Real64 2147483647"},
      {"columnMin", {"Real64: NaN NaN"}, "Real64 <1>"},
      {"columnMin", {"Real64: -0 3 inf"}, "Real64 -0"},
      {"columnMax", {"Int32: -5 <9> -7"}, "Int32 -5"},
      {"columnMax", {"DateTime:"}, "DateTime <1>"},
      {"columnMedian", {"Real64: 4 1 NaN 2 <1>"}, "Real64 2"},
      {"columnMedian", {"Real64: -inf -inf inf inf"}, "Real64 NaN"},
      {"columnMedian", {"Real64: inf inf"}, "Real64 Infinity"},
      {"columnQuantile", {"Real64: 4 1 2 3", "Real64 1"}, "Real64 4"},
      {"columnQuantile", {"Real64: 4 1 2 3", "Real64 0"}, "Real64 1"},
      {"columnQuantile",
       {"Real64: 1", "Real64 1.5"},
       "error 55: value of the wrong kind: fraction 1.500000 outside of 0 to 1"},
      {"columnQuantile",
       {"Real64: 1", "Real64 NaN"},
       "error 55: value of the wrong kind: fraction nan outside of 0 to 1"},
      {"columnStdev", {"Real64: 1000000001 1000000002 1000000003"}, "Real64 1"},
      {"columnStdev", {"Real64: 5"}, "Real64 <1>"},
  });
}

using Numbers = std::vector<double>;

/// Aggregates of a handful of numbers, each written down as its definition says; nullopt becomes missing.
struct Models {
  static double Sum(Numbers const& values) {
    double sum = 0;
    for (double const value : values) sum += value;
    return sum;
  }
  static double Mean(Numbers const& values) { return Sum(values) / static_cast<double>(values.size()); }
  static double Quantile(Numbers values, double fraction) {
    std::ranges::sort(values);
    double const place = fraction * static_cast<double>(values.size() - 1);
    double const below = values[static_cast<std::size_t>(std::floor(place))];
    double const above = values[static_cast<std::size_t>(std::ceil(place))];
    return below + (above - below) * (place - std::floor(place));
  }
  static double Deviation(Numbers const& values) {
    double squares = 0;
    for (double const value : values) squares += (value - Mean(values)) * (value - Mean(values));
    return std::sqrt(squares / static_cast<double>(values.size() - 1));
  }
};

TEST(BuiltinAggregation, AgreesWithTheDefinitionsForRandomGroups) {
  std::mt19937 random(19);
  for (StoreType const type : {StoreType::Int32, StoreType::Real32, StoreType::Real64}) {
    for (int const groupCount : {1, 5, 60}) {
      constexpr int kRows = 500;
      Value raw = Call("subtract", {RandomRows(kRows, 2000, random), factory::MakeInt32(1000)});
      Value const masked = Call(
          "choose",
          {Call("less", {RandomRows(kRows, 10, random), factory::MakeInt32(8)}), raw, Parse("Int32 <9>")});
      Value const values = type == StoreType::Int32    ? masked
                           : type == StoreType::Real32 ? Call("toReal32", {masked})
                                                       : Call("asReal64", {masked});
      Value const groups = RandomRows(kRows, groupCount, random);
      std::vector<Numbers> members(static_cast<std::size_t>(groupCount));
      Value const reals = type == StoreType::Real64 ? values : Call("asReal64", {values});
      for (int row = 0; row < kRows; ++row) {
        if (reals->AsColumn().IsSpecial(row)) continue;
        members[static_cast<std::size_t>(groups->AsTypedArray<int>().GetElement(row))].push_back(
            reals->AsTypedArray<double>().GetElement(row));
      }
      Value const quarter = factory::MakeReal64(0.25);
      auto const check = [&](Value const& column, auto const& model, std::size_t minimum, double tolerance) {
        Value const numbers =
            column->GetTypeInfo().GetElementType() == StoreType::Real64 ? column : Call("asReal64", {column});
        for (int group = 0; group < CountRows(column); ++group) {
          auto const& own = members[static_cast<std::size_t>(group)];
          ASSERT_EQ(numbers->AsColumn().IsSpecial(group), own.size() < minimum);
          if (own.size() < minimum) continue;
          EXPECT_NEAR(numbers->AsTypedArray<double>().GetElement(group), model(own), tolerance);
        }
      };
      check(Call("groupSum", {values, groups}), Models::Sum, 1, 0);
      check(Call("groupMean", {values, groups}), Models::Mean, 1, 0);
      check(
          Call("groupMin", {values, groups}), [](auto const& own) { return std::ranges::min(own); }, 1, 0);
      check(
          Call("groupMax", {values, groups}), [](auto const& own) { return std::ranges::max(own); }, 1, 0);
      check(
          Call("groupMedian", {values, groups}), [](auto const& own) { return Models::Quantile(own, 0.5); },
          1, 0);
      check(
          Call("groupQuantile", {values, groups, quarter}),
          [](auto const& own) { return Models::Quantile(own, 0.25); }, 1, 1e-9);
      check(Call("groupStdev", {values, groups}), Models::Deviation, 2, 1e-9);
    }
  }
}

TEST(BuiltinAggregation, AColumnIsOneGroup) {
  std::mt19937 random(23);
  for (StoreType const type : {StoreType::Int32, StoreType::Int64, StoreType::Real32, StoreType::Real64}) {
    Value const values = RandomColumn(type, 200, true, random);
    Value const groups = Call("repeat", {factory::MakeInt32(0), factory::MakeInt32(200)});
    for (std::string const name : {"Sum", "Mean", "Min", "Max", "Median", "Stdev"}) {
      Value const grouped = Call("group" + name, {values, groups});
      EXPECT_EQ(ShowRow(grouped, 0),
                Show(Call("column" + name, {values})).substr(Show(grouped).find(':') + 1));
    }
  }
}

}  // namespace
}  // namespace builtins_test
