#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <random>

#include "ostrelrtcore/FloatUtil.h"

namespace {

using ort::core::FloatUtil::Compare;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

double Step(double from, int steps) {
  for (int i = 0; i < std::abs(steps); ++i) from = std::nextafter(from, steps < 0 ? -kInfinity : kInfinity);
  return from;
}

int Sign(int value) { return (value > 0) - (value < 0); }

TEST(FloatUtilCompare, CountsStepsBetweenDoubles) {
  for (double const base :
       {0.0, -0.0, 1.0, -1.0, 1e300, -1e-300, 0.1, 1024.0, -1024.0, kTiny, 5 * kTiny, -3 * kTiny}) {
    for (int const steps : {0, 1, 15, 16}) {
      EXPECT_EQ(Compare(base, Step(base, steps), 16), 0) << base << ' ' << steps;
      EXPECT_EQ(Compare(Step(base, steps), base, 16), 0) << base << ' ' << steps;
    }
    EXPECT_LT(Compare(base, Step(base, 17), 16), 0) << base;
    EXPECT_GT(Compare(Step(base, 17), base, 16), 0) << base;
    EXPECT_LT(Compare(base, Step(base, 1), 0), 0) << base;
    EXPECT_EQ(Compare(base, base, 0), 0) << base;
  }
}

TEST(FloatUtilCompare, KeepsTheEdgesOfTheNumbersApart) {
  struct {
    double a;
    double b;
    unsigned int tolerance;
    int sign;
  } const cases[] = {
      {0.0, -0.0, 0, 0},
      {kInfinity, kInfinity, 0, 0},
      {-kInfinity, -kInfinity, 0, 0},
      {kMax, kInfinity, UINT_MAX, -1},
      {-kMax, -kInfinity, UINT_MAX, 1},
      {-kInfinity, kInfinity, UINT_MAX, -1},
      {-kMax, kMax, UINT_MAX, -1},
      {kMax, -kMax, UINT_MAX, 1},
      {-1.0, 1.0, UINT_MAX, -1},
      {kNaN, kInfinity, 16, 1},
      {kInfinity, kNaN, 16, -1},
      {kNaN, -1.0, UINT_MAX, 1},
      {-1.0, -kNaN, UINT_MAX, -1},
      {kNaN, kNaN, UINT_MAX, 1},
      {-kTiny, kTiny, 1, -1},
      {-kTiny, kTiny, 2, 0},
      {1.0, 2.0, 16, -1},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(Sign(Compare(c.a, c.b, c.tolerance)), c.sign) << c.a << ' ' << c.b << ' ' << c.tolerance;
  }
}

}  // namespace
