#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <random>
#include <unordered_map>

#include "ostreltransforms/SeenIntegers.h"

namespace {

using OstrelTransforms::SeenIntegers;

std::vector<int> Number(std::vector<int> const& values) {
  std::unordered_map<int, int> seen;
  std::vector<int> numbers;
  for (int const value : values)
    numbers.push_back(seen.try_emplace(value, static_cast<int>(seen.size())).first->second);
  return numbers;
}

// Integers whose products with the hash table's first multiplier have the same twelve high bits.
std::vector<int> MakeCrowded() {
  std::vector<int> crowded;
  for (unsigned i = 0; i < 1U << 25; ++i) {
    if ((i * UINT64_C(0x9E3779B97F4A7C15)) >> 52 == 0) crowded.push_back(static_cast<int>(i));
  }
  return crowded;
}

// Added all at once, in place, and in pieces of any length, row by row or together.
template <class Mark>
void ExpectSeen(std::vector<int> const& values) {
  std::vector<int> const numbers = Number(values);
  std::vector<std::pair<int, bool>> expected, together(values.size()), apart(values.size());
  int count = 0;
  for (int const number : numbers) {
    expected.emplace_back(sizeof(Mark) == sizeof(int) ? number : 0, number == count);
    count += number == count;
  }

  SeenIntegers<Mark> whole, pieces, inPlace;
  whole.AddAll(values, [&](std::size_t row, auto entry) { together[row] = {entry.mark, entry.isNew}; });
  EXPECT_EQ(together, expected);

  std::mt19937 random(3);
  for (std::size_t row = 0; row < values.size();) {
    std::size_t const end = std::min<std::size_t>(values.size(), row + random() % 400);
    if (random() % 2 == 0) {
      for (; row < end; ++row) {
        auto const entry = pieces.Add(values[row]);
        apart[row] = {entry.mark, entry.isNew};
      }
    } else {
      pieces.AddAll(std::span(values).subspan(row, end - row), [&](std::size_t at, auto entry) {
        apart[row + at] = {entry.mark, entry.isNew};
      });
      row = end;
    }
  }
  EXPECT_EQ(apart, expected);

  std::vector<int> column = values;
  inPlace.AddAll(column, [&](std::size_t row, auto entry) { column[row] = entry.mark; });
  for (std::size_t row = 0; row < column.size(); ++row) ASSERT_EQ(column[row], expected[row].first);
}

TEST(SeenIntegers, AgreeWithAMapOnAnyNumbers) {
  std::mt19937 random(20240501);
  auto const among = [&](unsigned spread) { return static_cast<int>(random() % spread); };
  struct {
    char const* name;
    int rows;
    std::function<int(int)> value;
  } const cases[] = {
      {"none", 0, [](int) { return 0; }},
      {"few", 3000, [&](int) { return among(9) - 4; }},
      {"near", 5000, [&](int) { return among(3000); }},
      {"many", 20000, [&](int) { return among(30000) * 3; }},
      {"of a year", 3000, [&](int) { return 1'900'000 + among(366); }},
      {"at the largest", 3000, [&](int) { return INT_MAX - among(500); }},
      {"beside 0", 3000, [&](int) { return among(1000) - 500; }},
      {"ascending", 3000, [](int row) { return row - 1500; }},
      {"descending", 3000, [](int row) { return INT_MIN + 3000 - row; }},
      {"at either end in turn", 3000, [](int row) { return row % 2 == 0 ? row : -row; }},
      {"around both ends", 3000,
       [](int row) { return row % 2 == 0 ? INT_MAX - row / 6 : INT_MIN + row / 6; }},
      {"outliers", 5000, [&](int row) { return row % 50 == 0 ? static_cast<int>(random()) : among(200); }},
      {"far", 5000, [&](int) { return among(200) * 10'000'019; }},
      {"any", 20000, [&](int) { return static_cast<int>(random()); }},
      {"high bits", 3000, [&](int) { return static_cast<int>(static_cast<unsigned>(among(200)) << 24); }},
      {"crowded", 9000,
       [&, crowded = MakeCrowded()](int row) {
         return crowded[random() % static_cast<unsigned>(1 + row / 4)];
       }},
  };
  for (auto const& [name, rows, value] : cases) {
    SCOPED_TRACE(name);
    std::vector<int> values;
    for (int row = 0; row < rows; ++row) values.push_back(value(row));
    ExpectSeen<int>(values);
    ExpectSeen<std::int8_t>(values);
  }
}

}  // namespace
