#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "charts/functions/BinRange.h"

namespace {

using namespace ostrel::charts;

TEST(BinRange, FindsRoundBins) {
  struct {
    BinRequest request;
    char const* bins;  ///< start, stop, step
  } const cases[] = {
      {{1.4, 9.3, 10}, "1 10 1"},
      {{0, 100, 10}, "0 100 10"},
      {{0, 101, 10}, "0 120 20"},
      {{-7, 12, 10}, "-8 12 2"},
      {{0.13, 0.97, 10}, "0.1 1 0.1"},
      {{0.1, 0.3, 20}, "0.1 0.3 0.01"},
      {{5, 5, 10}, "5 5.5 0.5"},
      {{0, 0, 10}, "0 0.1 0.1"},
      {{0, 10, 1}, "0 10 10"},
      {{3, 14, 10, 4}, "0 16 4"},
      {{0, 10, 10, 0, 3}, "0 12 3"},
      {{-1e300, 1e300, 10}, "-1e+300 1e+300 2e+299"},
      {{0, 5e-324, 10}, "0 2.225073858507203e-309 2.225073858507203e-309"},
  };
  for (auto const& [request, bins] : cases) {
    BinRange const range = FindBins(request);
    EXPECT_EQ(fmt::format("{} {} {}", range.start, range.stop, range.step), bins)
        << request.minimum << " " << request.maximum;
  }
}

TEST(BinRange, CoversTheRangeWithAsManyBinsAsAskedFor) {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> exponent(-12, 12);
  for (int i = 0; i < 2'000; ++i) {
    double const low = std::pow(10, exponent(random)) * (i % 2 == 0 ? 1 : -1);
    double const span = std::pow(10, exponent(random)) + std::abs(low) * 1e-6;
    double const count = 1 + i % 40;
    BinRange const range = FindBins({low, low + span, count});
    double const slack = range.step * 1e-6;
    EXPECT_LE(range.start, low + slack);
    EXPECT_GE(range.stop, low + span - slack);
    // The ends stand on multiples of the step, which may take one bin more.
    EXPECT_LE((range.stop - range.start) / range.step, count + 1 + 1e-6)
        << low << " " << span << " " << count;
    double const mantissa = range.step / std::pow(10, std::floor(std::log10(range.step) + 1e-9));
    EXPECT_NEAR(mantissa, mantissa < 1.5 ? 1 : mantissa < 3 ? 2 : 5, 1e-6);
  }
}

}  // namespace
