#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "charts/functions/LogTicks.h"
#include "ostrelrtcore/ErrorOf.h"

namespace {

using namespace ostrel::charts;
using ort::core::Error;
using ort::core::ErrorOf;
using Numbers = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

TEST(NiceLogDomain, WidensToPowersOfTheBase) {
  struct {
    Domain domain;
    double base;
    Domain nice;
  } const cases[] = {
      {{3, 4200}, 10, {1, 10'000}},
      {{4200, 3}, 10, {10'000, 1}},
      {{0.02, 0.5}, 10, {0.01, 1}},
      {{1, 1000}, 10, {1, 1000}},
      {{0.001, 1e-3}, 10, {1e-3, 1e-3}},
      {{2, 2}, 10, {1, 10}},
      {{999.9999999999999, 1000.0000000000001}, 10, {100, 10'000}},
      {{3, 100}, 2, {2, 128}},
      {{0.3, 3}, 2, {0.25, 4}},
      {{3, 30}, 2.5, {2.5, 39.0625}},
      {{3e22, 2e23}, 10, {1e22, 1e24}},
      {{3e-310, kLargest}, 10, {1e-310, kLargest}},
  };
  for (auto const& [domain, base, nice] : cases) {
    auto const result = NiceLogDomain(domain, base);
    EXPECT_EQ(result.minimum, nice.minimum) << domain.minimum << " to " << domain.maximum << ", " << base;
    EXPECT_EQ(result.maximum, nice.maximum) << domain.minimum << " to " << domain.maximum << ", " << base;
  }
}

TEST(NiceLogDomain, LeavesEveryPowerOfTenAsItIs) {
  for (int exponent = -323; exponent <= 308; ++exponent) {
    double const power = std::strtod((fmt::format("1e{}", exponent)).c_str(), nullptr);
    auto const nice = NiceLogDomain({power, power}, 10);
    EXPECT_EQ(nice.minimum, power) << exponent;
    EXPECT_EQ(nice.maximum, power) << exponent;
  }
}

TEST(NiceLogDomain, RefusesWhatHasNoLogarithm) {
  struct {
    Domain domain;
    double base;
    char const* message;
  } const cases[] = {
      {{0, 10}, 10, "a logarithmic scale needs a domain above 0, not from 0 to 10"},
      {{10, -1.5}, 10, "a logarithmic scale needs a domain above 0, not from 10 to -1.5"},
      {{kNaN, 1}, 10, "a logarithmic scale needs a domain above 0, not from nan to 1"},
      {{1, kInfinity}, 10, "a logarithmic scale needs a domain above 0, not from 1 to inf"},
      {{1, 10}, 1, "the base of a logarithmic scale must be above 1, not 1"},
      {{1, 10}, -2, "the base of a logarithmic scale must be above 1, not -2"},
      {{1, 10}, kNaN, "the base of a logarithmic scale must be above 1, not nan"},
      {{1, 10}, kInfinity, "the base of a logarithmic scale must be above 1, not inf"},
  };
  for (auto const& row : cases) {
    EXPECT_EQ(ErrorOf([&] { NiceLogDomain(row.domain, row.base); }), Error(2, row.message));
  }
}

TEST(LogTickValues, StandAtTheirPositions) {
  struct {
    Numbers positions;
    Domain domain;
    double count;
    Numbers values;
  } const cases[] = {
      {{0, 0.5, 1, 1.5}, {1, 100}, 5, {1, 10, 100}},
      {{-0.5, 0, 0.5, 1}, {100, 1}, 5, {100, 10, 1}},
      {{0, 1.0 / 3, 2.0 / 3, 1}, {0.001, 1}, 5, {0.001, 0.01, 0.1, 1}},
      {{std::log10(2.0), std::log10(5.0)}, {1, 10}, 5, {2, 5}},
      {{0.5, 0.5, 1}, {1, 100}, 5, {10, 100}},
      {{kNaN, 0, 1}, {1, 100}, 5, {1, 100}},
      // An end that has no logarithm counts as 1.
      {{0, 0.5, 1}, {0, 100}, 5, {1, 10, 100}},
      // Fewer than two are left.
      {{0}, {20, 60}, 4, {20, 30, 40, 50, 60}},
      {{}, {60, 20}, 4, {60, 50, 40, 30, 20}},
      {{}, {1.1, 1.9}, 1, {1.2, 1.4, 1.6, 1.8}},
      {{}, {1, 3}, 0, {1, 2, 3}},
      {{}, {1, 3}, kNaN, {1, 2, 3}},
      {{}, {7, 7}, 5, {7}},
      {{}, {1, kInfinity}, 5, {}},
  };
  for (auto const& [positions, domain, count, values] : cases) {
    EXPECT_EQ(LogTickValues(positions, domain, count), values) << domain.minimum << " to " << domain.maximum;
  }
}

TEST(LogTickValues, OfMultiplesOfPowersAreExactInRandomDomains) {
  std::mt19937 random(9);
  for (int i = 0; i < 2'000; ++i) {
    int const exponent = static_cast<int>(random() % 200) - 100;
    int const decades = 1 + static_cast<int>(random() % 12);
    Domain const domain{std::stod(fmt::format("1e{}", exponent)),
                        std::stod(fmt::format("1e{}", exponent + decades))};
    Numbers positions;
    Numbers expected;
    for (int decade = 0; decade < decades; ++decade) {
      for (int digit : {1, 2, 5}) {
        positions.push_back((decade + std::log10(digit)) / decades);
        expected.push_back(std::stod(fmt::format("{}e{}", digit, exponent + decade)));
      }
    }
    ASSERT_EQ(LogTickValues(positions, domain, 5), expected) << exponent << ", " << decades;
  }
}

TEST(RoundToTwelveDigits, TakesTheNearest) {
  EXPECT_EQ(RoundToTwelveDigits(0.1 + 0.2), 0.3);
  EXPECT_EQ(RoundToTwelveDigits(1.0 / 3), 0.333333333333);
  EXPECT_EQ(RoundToTwelveDigits(-1234567890125), -1234567890120);
  EXPECT_EQ(RoundToTwelveDigits(kLargest), 1.79769313486e308);
  EXPECT_EQ(RoundToTwelveDigits(5e-324), 5e-324);
  EXPECT_EQ(RoundToTwelveDigits(kInfinity), kInfinity);
  EXPECT_TRUE(std::isnan(RoundToTwelveDigits(kNaN)));
}

}  // namespace
