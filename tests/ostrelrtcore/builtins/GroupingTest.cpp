#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>

#include "ostrelrtcore/builtins/Lines.h"

namespace builtins_test {
namespace {

using namespace ort::core;

TEST(BuiltinGrouping, NumbersGroupsInOrderOfAppearance) {
  RunCases({
      {"groupIndex", {"String: b a b <9> <1> <9> a"}, "Int32: 0 1 0 2 3 2 1"},
      {"groupIndex", {"Real64: NaN 0 -0 NaN"}, "Int32: 0 1 1 0"},
      {"groupIndex", {"Int32: 1 1 2 2", "Bool: T F T T"}, "Int32: 0 1 2 2"},
      {"groupIndex", {"Int32: 0 <1> 0 <9>", "Real32: <1> 0 <1> 0"}, "Int32: 0 1 0 2"},
      {"groupIndex", {"Int32:"}, "Int32:"},
      {"groupIndex", {"Int32: 1", "Int32:"}, "error 259: columns differ in length: columns: 0 rows beside 1"},
      {"groupIndex", {}, "error 219: wrong count of inputs or members: one column or more wanted"},
      {"groupIndex", {"Int32 1"}, "error 55: value of the wrong kind: Int32 read as Array"},
      {"distinct", {"String: b a b <9> a"}, "String: b a <9>"},
      {"distinctSorted", {"String: b a b <9> <1> a"}, "String: a b <1> <9>"},
      {"distinctSorted", {"Real64: NaN 2 -inf NaN"}, "Real64: -Infinity 2 NaN"},
      {"indexIn", {"String: b x <9> <1>", "String: a b <9> b"}, "Int32: 1 <1> 2 <1>"},
      {"indexIn", {"Real64: -0 NaN", "Real64: NaN 0"}, "Int32: 1 0"},
      {"indexIn",
       {"Int32: 0", "Real64: 0"},
       "error 220: operands are of different types: values and domain are no columns of one element type"},
      {"countOrdinary", {"Int32: 1 <1> 1 <9>"}, "Int32 2"},
      {"countDistinct", {"Int32: 1 <1> 1 <9> 2"}, "Int32 2"},
      {"countDistinct", {"Int32:"}, "Int32 0"},
  });
}

TEST(BuiltinGrouping, GroupsWholeValuesByContent) {
  Value const tuples = Call("zipTuples", {Parse("Int32: 1 2 1 1"), Parse("String: a a a b")});
  EXPECT_EQ(ShowCall("groupIndex", {tuples}), "Int32: 0 1 0 2");
  EXPECT_EQ(ShowCall("countDistinct", {tuples}), "Int32 3");
  EXPECT_EQ(ShowCall("sortIndices", {tuples}), "error 178: type not supported: no order of Tuple");
}

/// The cells as texts; the texts of both zeros are made one.
std::vector<std::string> Keys(Value const& column) {
  auto rows = ShowRows(column);
  std::ranges::replace(rows, std::string("-0"), std::string("0"));
  return rows;
}

TEST(BuiltinGrouping, AgreesWithASearchThroughEarlierRowsForEveryType) {
  std::mt19937 random(13);
  for (StoreType const type : ColumnTypes()) {
    for (int const count : {0, 1, 40, 2000}) {
      for (bool const hasSpecials : {false, true}) {
        Value const column = RandomColumn(type, count, hasSpecials, random);
        Value const other = RandomColumn(StoreType::Bool, count, hasSpecials, random);
        auto const keys = Keys(column);
        auto const others = Keys(other);
        std::vector<std::string> distinct;
        std::vector<std::string> groups;
        std::map<std::string, std::size_t> seen;
        std::map<std::string, std::size_t> seenPairs;
        std::vector<std::string> pairs;
        for (std::size_t row = 0; row < keys.size(); ++row) {
          auto const [group, isNew] = seen.try_emplace(keys[row], seen.size());
          if (isNew) distinct.push_back(keys[row]);
          groups.push_back(std::to_string(group->second));
          auto const pair = seenPairs.try_emplace(keys[row] + "|" + others[row], seenPairs.size()).first;
          pairs.push_back(std::to_string(pair->second));
        }
        Value const index = Call("groupIndex", {column});
        EXPECT_EQ(ShowRows(index), groups);
        EXPECT_EQ(ShowRows(Call("groupIndex", {column, other})), pairs);
        Value const values = Call("distinct", {column});
        EXPECT_EQ(Keys(values), distinct);
        EXPECT_TRUE(Call("take", {values, index})->Equals(*column));
        EXPECT_TRUE(Call("indexIn", {column, values})->Equals(*index));
        EXPECT_TRUE(
            Call("distinct", {Call("take", {column, Call("groupFirstRow", {index})})})->Equals(*values));
        auto const isSpecial = [](auto const& key) { return key.starts_with("<"); };
        EXPECT_EQ(Show(Call("countDistinct", {column})),
                  "Int32 " + std::to_string(distinct.size() - static_cast<std::size_t>(std::ranges::count_if(
                                                                  distinct, isSpecial))));
        EXPECT_EQ(Show(Call("countOrdinary", {column})),
                  "Int32 " + std::to_string(count - std::ranges::count_if(keys, isSpecial)));
      }
    }
  }
}

TEST(BuiltinSorting, PutsNanAndSpecialRowsLastInBothDirections) {
  RunCases({
      {"sortIndices", {"Real64: 2 <9> NaN -1 <1> inf"}, "Int32: 3 0 5 2 4 1"},
      {"sortIndices", {"Real64: 2 <9> NaN -1 <1> inf", "Bool T"}, "Int32: 5 0 3 2 4 1"},
      {"sortIndices", {"Real64: 0 -0 0 -0"}, "Int32: 0 1 2 3"},
      {"sortIndices", {"String: b a b a", "Int32: 1 2 3 4", "Bool T"}, "Int32: 3 1 2 0"},
      {"sortIndices", {"String: b a b a", "Bool T", "Int32: 4 3 2 1"}, "Int32: 2 0 3 1"},
      {"sortIndices", {"Int32:"}, "Int32:"},
      {"sortIndices",
       {"Bool T"},
       "error 55: value of the wrong kind: columns wanted, each with one Bool behind it or none"},
      {"sortIndices",
       {"Int32: 1", "Bool T", "Bool T"},
       "error 55: value of the wrong kind: columns wanted, each with one Bool behind it or none"},
      {"sortIndices",
       {"Int32: 1", "Int32: 1 2"},
       "error 259: columns differ in length: columns: 2 rows beside 1"},
      {"sortIndices", {}, "error 219: wrong count of inputs or members: one column or more wanted"},
      {"rank", {"Real64: 2 3 2 <9> 1", "Bool F"}, "Int32: 2 4 2 <9> 1"},
      {"rank", {"Real64: 2 3 2 <9> 1", "Bool T"}, "Int32: 2 1 2 <9> 4"},
      {"rank", {"String: b a b"}, "Int32: 2 1 2"},
      {"rank", {"Int32: 1", "Int32: 1"}, "error 219: wrong count of inputs or members: one column wanted"},
  });
}

/// The place of a row among others: numbers, then NaN, then special rows by kind.
int PlaceClass(Value const& cell) {
  if (cell->IsSpecial()) return 1 + static_cast<int>(cell->GetSpecialKind());
  bool const isReal = cell->GetStoreType() == StoreType::Real64 || cell->GetStoreType() == StoreType::Real32;
  return isReal && std::isnan(cell->ConvertTo(StoreType::Real64)->GetReal64()) ? 1 : 0;
}

bool ComesBefore(Value const& a, Value const& b, bool isDescending) {
  if (PlaceClass(a) != PlaceClass(b)) return PlaceClass(a) < PlaceClass(b);
  if (PlaceClass(a) != 0) return false;
  return isDescending ? b->IsLessThan(*a) : a->IsLessThan(*b);
}

TEST(BuiltinSorting, AgreesWithAStableSortByComparisonForEveryType) {
  std::mt19937 random(17);
  for (StoreType const type : ColumnTypes()) {
    if (type == StoreType::Bool || type == StoreType::Color) continue;
    for (int const count : {1, 30, 600}) {
      for (bool const isDescending : {false, true}) {
        Value const column = RandomColumn(type, count, true, random);
        Value const second = RandomColumn(StoreType::Int32, count, true, random);
        std::vector<Value> cells;
        std::vector<Value> seconds;
        for (int row = 0; row < count; ++row) {
          cells.push_back(Call("element", {column, factory::MakeInt32(row)}));
          seconds.push_back(Call("element", {second, factory::MakeInt32(row)}));
        }
        std::vector<int> order(static_cast<std::size_t>(count));
        std::iota(order.begin(), order.end(), 0);
        auto const at = [](auto const& values, int row) { return values[static_cast<std::size_t>(row)]; };
        std::ranges::stable_sort(
            order, [&](int a, int b) { return ComesBefore(at(cells, a), at(cells, b), isDescending); });
        std::vector<std::string> expected;
        for (int const row : order) expected.push_back(std::to_string(row));
        Value const flag = factory::MakeBool(isDescending);
        EXPECT_EQ(ShowRows(Call("sortIndices", {column, flag})), expected);

        std::vector<std::string> ranks(expected.size());
        for (std::size_t place = 0; place < order.size(); ++place) {
          auto const row = static_cast<std::size_t>(order[place]);
          auto const before = place == 0 ? row : static_cast<std::size_t>(order[place - 1]);
          bool const isTied = place > 0 && !ComesBefore(cells[before], cells[row], isDescending);
          ranks[row] = isTied ? ranks[before] : std::to_string(place + 1);
          if (cells[row]->IsSpecial()) ranks[row] = Keys(column)[row];
        }
        EXPECT_EQ(ShowRows(Call("rank", {column, flag})), ranks);

        std::ranges::stable_sort(order, [&](int a, int b) {
          if (ComesBefore(at(cells, a), at(cells, b), isDescending)) return true;
          if (ComesBefore(at(cells, b), at(cells, a), isDescending)) return false;
          return ComesBefore(at(seconds, a), at(seconds, b), !isDescending);
        });
        expected.clear();
        for (int const row : order) expected.push_back(std::to_string(row));
        EXPECT_EQ(ShowRows(Call("sortIndices", {column, flag, second, factory::MakeBool(!isDescending)})),
                  expected);
      }
    }
  }
}

}  // namespace
}  // namespace builtins_test
