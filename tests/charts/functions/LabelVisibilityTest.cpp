#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "charts/functions/LabelVisibility.h"

namespace {

using namespace ostrel::charts;
using Numbers = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string Show(Numbers const& positions, Numbers const& sizes, double gap, LabelStrategy strategy) {
  std::string shown;
  for (auto const flag : VisibleLabels(positions, sizes, gap, strategy)) shown += flag != 0 ? '#' : '.';
  return shown;
}

TEST(VisibleLabels, KeepTheGapByEitherStrategy) {
  struct {
    Numbers positions;
    Numbers sizes;
    double gap;
    char const* parity;
    char const* greedy;
  } const cases[] = {
      {{}, {}, 2, "", ""},
      {{5}, {100}, 2, "#", "#"},
      {{0, 10, 20}, {8, 8, 8}, 2, "###", "###"},
      {{0, 10, 20}, {12, 12, 12}, 2, "#.#", "#.#"},
      {{0, 10, 20, 30, 40}, {35, 35, 35, 35, 35}, 0, "#...#", "#...#"},
      {{0, 10, 20, 30}, {60, 60, 60, 60}, 0, "#...", "#..."},
      // Greedy fills what parity leaves free.
      {{0, 10, 20, 30}, {4, 18, 4, 4}, 2, "#.#.", "#.##"},
      {{0, 5, 30, 60}, {8, 8, 8, 8}, 2, "#.#.", "#.##"},
      // The first row's end comes first, whatever the order of rows.
      {{30, 20, 10, 0}, {12, 12, 12, 12}, 0, "#.#.", "#.#."},
      {{0, 20, 10, 30}, {12, 12, 12, 12}, 0, "##..", "##.."},
      {{7, 7, 7}, {0, 0, 0}, 0, "###", "###"},
      {{7, 7, 7}, {0, 0, 0}, 1, "#..", "#.."},
      {{0, 10}, {-30, -30}, -5, "##", "##"},
      {{0, 10}, {8, 8}, kNaN, "##", "##"},
      {{0, 10, 20}, {1, 1, 1}, kInfinity, "#..", "#.."},
      {{kNaN, 0, 10, kInfinity}, {1, kInfinity, 1, 1}, 0, "..#.", "..#."},
      {{0, 10, 20}, {1, kNaN, 1}, 0, "#.#", "#.#"},
  };
  for (auto const& [positions, sizes, gap, parity, greedy] : cases) {
    SCOPED_TRACE(testing::PrintToString(positions) + testing::PrintToString(sizes));
    EXPECT_EQ(Show(positions, sizes, gap, LabelStrategy::Parity), parity);
    EXPECT_EQ(Show(positions, sizes, gap, LabelStrategy::Greedy), greedy);
  }
}

/// Whether every two shown labels, not neighbours alone, are clear of each other.
bool AreClear(Numbers const& positions, Numbers const& sizes, std::vector<std::uint8_t> const& shown,
              double gap) {
  for (std::size_t a = 0; a < positions.size(); ++a) {
    for (std::size_t b = a + 1; b < positions.size(); ++b) {
      if (shown[a] == 0 || shown[b] == 0) continue;
      if (std::abs(positions[a] - positions[b]) - (sizes[a] + sizes[b]) / 2 < gap) return false;
    }
  }
  return true;
}

TEST(VisibleLabels, NeverOverlapAtRandom) {
  std::mt19937 random(3);
  for (int i = 0; i < 5'000; ++i) {
    std::size_t const count = 1 + random() % 20;
    Numbers positions(count);
    Numbers sizes(count);
    for (double& position : positions) position = random() % 200;
    for (double& size : sizes) size = random() % 30;
    if (random() % 2 == 0) std::ranges::sort(positions);
    double const gap = random() % 5;
    SCOPED_TRACE(testing::PrintToString(positions) + testing::PrintToString(sizes));
    auto const parity = VisibleLabels(positions, sizes, gap, LabelStrategy::Parity);
    auto const greedy = VisibleLabels(positions, sizes, gap, LabelStrategy::Greedy);
    ASSERT_TRUE(AreClear(positions, sizes, parity, gap));
    ASSERT_TRUE(AreClear(positions, sizes, greedy, gap));
    ASSERT_GE(std::reduce(parity.begin(), parity.end(), 0), 1);
    // What greedy leaves out has no place beside what it shows.
    for (std::size_t row = 0; row < count; ++row) {
      auto more = greedy;
      more[row] = 1;
      ASSERT_TRUE(more == greedy || !AreClear(positions, sizes, more, gap)) << row;
    }
  }
}

}  // namespace
