#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "ostreltransforms/map/ElementaryFunctions.h"
#include "ostreltransforms/map/IntegerConversion.h"

namespace {

using OstrelTransforms::Exponential;
using OstrelTransforms::NaturalLogarithm;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// The distance in units in the last place of the exact result, which has 11 more bits than a double.
double UnitsFrom(double got, long double exact) {
  if (std::isinf(got)) return std::fabs(exact) > std::numeric_limits<double>::max() ? 0 : kInfinity;
  int const exponent = std::max(std::ilogb(exact), -1022);
  return static_cast<double>(std::fabs(got - exact) / std::scalbn(1.0L, exponent - 52));
}

TEST(ElementaryFunctions, LogarithmIsWithinOneUnit) {
  std::mt19937_64 random(1);
  double worst = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    double const unit = static_cast<double>(random() >> 11) * 0x1p-53;
    double const x = i % 3 == 0   ? std::bit_cast<double>(random() % 0x7FF0'0000'0000'0000)
                     : i % 3 == 1 ? 0.5 + 1.5 * unit
                                  : 1 + (unit - 0.5) * std::exp2(-static_cast<int>(random() % 50));
    if (x > 0) worst = std::max(worst, UnitsFrom(NaturalLogarithm(x), std::log(static_cast<long double>(x))));
  }
  EXPECT_LT(worst, 0.9);
}

TEST(ElementaryFunctions, ExponentialIsWithinOneUnit) {
  std::mt19937_64 random(2);
  double worst = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    double const unit = static_cast<double>(random() >> 11) * 0x1p-52 - 1;
    double const x = unit * (i % 3 == 0   ? 746.0
                             : i % 3 == 1 ? 40.0
                                          : std::exp2(-static_cast<int>(random() % 60)));
    worst = std::max(worst, UnitsFrom(Exponential(x), std::exp(static_cast<long double>(x))));
  }
  EXPECT_LT(worst, 0.95);
}

TEST(ElementaryFunctions, MeetTheEndsOfTheirDomains) {
  double const nan = std::numeric_limits<double>::quiet_NaN();
  double const least = std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(NaturalLogarithm(1), 0);
  EXPECT_FALSE(std::signbit(NaturalLogarithm(1)));
  EXPECT_EQ(NaturalLogarithm(kInfinity), kInfinity);
  for (double const x : {0.0, -0.0, -least, -1.0, -1e308, -kInfinity})
    EXPECT_EQ(NaturalLogarithm(x), -kInfinity) << x;
  EXPECT_TRUE(std::isnan(NaturalLogarithm(nan)));
  EXPECT_TRUE(std::isnan(NaturalLogarithm(-nan)));
  EXPECT_NEAR(NaturalLogarithm(least), -744.4400719213812, 1e-12);
  EXPECT_EQ(Exponential(0), 1);
  EXPECT_EQ(Exponential(-0.0), 1);
  EXPECT_EQ(Exponential(kInfinity), kInfinity);
  EXPECT_EQ(Exponential(-kInfinity), 0);
  EXPECT_EQ(Exponential(709.79), kInfinity);
  EXPECT_EQ(Exponential(-745.2), 0);
  EXPECT_EQ(Exponential(-745.0), least);
  EXPECT_TRUE(std::isnan(Exponential(nan)));
}

TEST(ElementaryFunctions, IntegersConvertAsTheLanguageDoes) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 100'000; ++i) {
    auto const x = static_cast<std::int64_t>(random()) >> (random() % 64);
    ASSERT_EQ(OstrelTransforms::ToReal64(x), static_cast<double>(x)) << x;
  }
  for (std::int64_t const x : {INT64_MIN, INT64_MAX, std::int64_t{0}, (std::int64_t{1} << 53) + 1})
    EXPECT_EQ(OstrelTransforms::ToReal64(x), static_cast<double>(x));
}

}  // namespace
