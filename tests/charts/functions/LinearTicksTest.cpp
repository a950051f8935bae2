#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "charts/functions/LinearTicks.h"

namespace {

using namespace ostrel::charts;
using Numbers = std::vector<double>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kLargest = std::numeric_limits<double>::max();

TEST(LinearTicks, GiveTheRoundNumbersOfADomain) {
  struct {
    double minimum, maximum, count;
    Numbers ticks;
  } const cases[] = {
      {0, 1, 10, {0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1}},
      {0, 1, 5, {0, 0.2, 0.4, 0.6, 0.8, 1}},
      {0, 1, 3, {0, 0.5, 1}},
      {0, 1, 1, {0, 1}},
      {0, 10, 5, {0, 2, 4, 6, 8, 10}},
      {-10, 10, 4, {-10, -5, 0, 5, 10}},
      {-0.3, 0.3, 6, {-0.3, -0.2, -0.1, 0, 0.1, 0.2, 0.3}},
      {1, 0, 3, {1, 0.5, 0}},
      {0.13, 9.7, 4, {2, 4, 6, 8}},
      {0, 23e6, 5, {0, 5e6, 10e6, 15e6, 20e6}},
      // Where one tick is asked for and none fits, denser ones are looked for.
      {1.1, 1.9, 1, {1.5}},
      {364, 366, 1, {364, 366}},
      // Powers of ten that are no doubles themselves.
      {0, 1e24, 5, {0, 2e23, 4e23, 6e23, 8e23, 1e24}},
      {0, 7e-25, 7, {0, 1e-25, 2e-25, 3e-25, 4e-25, 5e-25, 6e-25, 7e-25}},
      {5, 5, 10, {5}},
      {-0.0, 0, 10, {0}},
      {0, 1, 0, {}},
      {0, 1, -3, {}},
      {0, 1, kNaN, {}},
      {kNaN, 1, 10, {}},
      {0, kInfinity, 10, {}},
      {-kInfinity, kInfinity, 10, {}},
      {-kLargest, kLargest, 10, {}},
      {0, 5e-324, 10, {}},
  };
  for (auto const& [minimum, maximum, count, ticks] : cases) {
    EXPECT_EQ(LinearTicks(minimum, maximum, count), ticks) << minimum << " to " << maximum << ", " << count;
  }
}

TEST(LinearTicks, AreNeverMoreThanTheLimitHoweverManyAreAskedFor) {
  for (double const count : {6e3, 1e4, 1e9, 1e300, kInfinity}) {
    for (double const maximum : {0.707, 1.0, 3.1, 7.0}) {
      auto const size = LinearTicks(0, maximum, count).size();
      EXPECT_LE(size, static_cast<std::size_t>(kMostTicks)) << maximum << ", " << count;
      EXPECT_GE(size, 3'000U) << maximum << ", " << count;
    }
  }
}

TEST(LinearTicks, OfNeighbouringDoublesStayInsideAndUnique) {
  for (double const start : {1.0, 1e16, 1e300, 123456789.0, -1e16}) {
    double end = start;
    for (int step = 1; step <= 20; ++step) {
      end = std::nextafter(end, kInfinity);
      for (double const count : {1.0, 3.0, 10.0, 100.0}) {
        auto const ticks = LinearTicks(start, end, count);
        SCOPED_TRACE(testing::Message() << start << ", " << step << ", " << count);
        EXPECT_TRUE(std::ranges::adjacent_find(ticks, std::greater_equal<>()) == ticks.end());
        EXPECT_TRUE(std::ranges::all_of(ticks, [&](double tick) { return start <= tick && tick <= end; }));
      }
    }
  }
}

TEST(LinearTickStep, IsTheDistanceOfTicks) {
  EXPECT_EQ(LinearTickStep(0, 1, 10), 0.1);
  EXPECT_EQ(LinearTickStep(1, 0, 3), 0.5);
  EXPECT_EQ(LinearTickStep(-100, 100, 4), 50);
  EXPECT_EQ(LinearTickStep(0, 3e23, 3), 1e23);
  EXPECT_EQ(LinearTickStep(2, 2, 10), 0);
  EXPECT_EQ(LinearTickStep(0, 1, 0), 0);
  EXPECT_EQ(LinearTickStep(0, kNaN, 10), 0);
}

TEST(NiceLinearDomain, WidensToMultiplesOfItsOwnStep) {
  struct {
    Domain domain;
    double count;
    Domain nice;
  } const cases[] = {
      {{0.13, 9.7}, 10, {0, 10}},
      {{9.7, 0.13}, 10, {10, 0}},
      {{0, 0.96}, 10, {0, 1}},
      {{1.1, 10.9}, 10, {1, 11}},
      {{123.1, 6.7}, 10, {130, 0}},
      {{-0.85, 0.0}, 10, {-0.9, 0}},
      {{12, 87}, 5, {0, 100}},
      {{12, 87}, 10, {10, 90}},
      {{12, 87}, 100, {12, 87}},
      {{0, 0.49}, 10, {0, 0.5}},
      // Multiples stay, also where their quotient by the step is no whole double.
      {{0, -2.5e-6}, 18, {0, -2.5e-6}},
      {{0, 3e23}, 3, {0, 3e23}},
      {{5, 5}, 10, {5, 5}},
      {{0.3, 9.7}, 0, {0.3, 9.7}},
      {{0.3, kInfinity}, 10, {0.3, kInfinity}},
      {{-kLargest, kLargest}, 10, {-kLargest, kLargest}},
      {{1, kLargest}, 10, {1, kLargest}},
  };
  for (auto const& [domain, count, nice] : cases) {
    auto const result = NiceLinearDomain(domain, count);
    EXPECT_EQ(result.minimum, nice.minimum) << domain.minimum << " to " << domain.maximum << ", " << count;
    EXPECT_EQ(result.maximum, nice.maximum) << domain.minimum << " to " << domain.maximum << ", " << count;
  }
}

/// Numbers of many sizes, half of them with few digits, as data have them.
class RandomNumbers {
 public:
  double Next() {
    double const value = uniform_(engine_) * std::pow(10, static_cast<int>(engine_() % 16) - 8);
    if (engine_() % 2 == 0) return value;
    char text[40];
    std::snprintf(text, sizeof text, "%.*e", static_cast<int>(engine_() % 3), value);
    return std::strtod(text, nullptr);
  }
  double NextCount() { return 1 + static_cast<double>(engine_() % 40) / 2; }

 private:
  std::mt19937 engine_{20};
  std::uniform_real_distribution<double> uniform_{-1, 1};
};

// Whether the number is the double nearest to one of fifteen digits.
bool IsRound(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.14e", value);
  return std::strtod(text, nullptr) == value;
}

TEST(LinearTicks, OfRandomDomainsAreSortedUniqueInsideAndEven) {
  RandomNumbers random;
  for (int i = 0; i < 20'000; ++i) {
    double const a = random.Next();
    double const b = random.Next();
    double const count = random.NextCount();
    SCOPED_TRACE(testing::Message() << std::hexfloat << a << " to " << b << ", " << count);
    if (a == b) continue;
    auto const ticks = LinearTicks(std::min(a, b), std::max(a, b), count);
    double const step = LinearTickStep(a, b, count);
    ASSERT_GE(static_cast<double>(ticks.size()), std::max(1.0, std::floor(count / 2)));
    ASSERT_LE(static_cast<double>(ticks.size()), 2.5 * count + 2);
    for (std::size_t t = 0; t < ticks.size(); ++t) {
      ASSERT_FALSE(std::signbit(ticks[t]) && ticks[t] == 0);
      ASSERT_GE(ticks[t], std::min(a, b));
      ASSERT_LE(ticks[t], std::max(a, b));
      // Ticks far from zero beside their step need more digits than these.
      if (std::abs(ticks[t]) < 1e10 * step) {
        ASSERT_TRUE(IsRound(ticks[t])) << ticks[t];
      }
      if (t > 0) {
        ASSERT_NEAR(ticks[t] - ticks[t - 1], step, 1e-12 * std::abs(ticks[t]) + 1e-6 * step);
      }
    }
    // No further one fits at either end.
    ASSERT_GT(ticks.back() + 1.001 * step, std::max(a, b));
    ASSERT_LT(ticks.front() - 1.001 * step, std::min(a, b));

    auto backwards = LinearTicks(std::max(a, b), std::min(a, b), count);
    std::ranges::reverse(backwards);
    ASSERT_EQ(backwards, ticks);

    Numbers negated = LinearTicks(-a, -b, count);
    for (double& tick : negated) tick = 0 - tick;
    if (a > b) std::ranges::reverse(negated);
    ASSERT_EQ(negated, ticks);
  }
}

TEST(NiceLinearDomain, OfRandomDomainsHoldsThemAndStays) {
  RandomNumbers random;
  for (int i = 0; i < 20'000; ++i) {
    Domain const domain{random.Next(), random.Next()};
    double const count = random.NextCount();
    SCOPED_TRACE(testing::Message() << std::hexfloat << domain.minimum << " to " << domain.maximum << ", "
                                    << count);
    Domain const nice = NiceLinearDomain(domain, count);
    double const rounding = 1e-15 * (std::abs(domain.minimum) + std::abs(domain.maximum));
    ASSERT_EQ(nice.minimum < nice.maximum, domain.minimum < domain.maximum);
    ASSERT_LE(std::min(nice.minimum, nice.maximum), std::min(domain.minimum, domain.maximum) + rounding);
    ASSERT_GE(std::max(nice.minimum, nice.maximum), std::max(domain.minimum, domain.maximum) - rounding);
    Domain const again = NiceLinearDomain(nice, count);
    ASSERT_EQ(again.minimum, nice.minimum);
    ASSERT_EQ(again.maximum, nice.maximum);
    Domain const swapped = NiceLinearDomain({domain.maximum, domain.minimum}, count);
    ASSERT_EQ(swapped.minimum, nice.maximum);
    ASSERT_EQ(swapped.maximum, nice.minimum);
  }
}

}  // namespace
