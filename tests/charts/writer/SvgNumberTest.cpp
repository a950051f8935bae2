#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include "charts/writer/SvgNumber.h"

namespace {

std::string Write(double value) {
  char text[ostrel::charts::kMaxSvgNumberLength];
  return {text, ostrel::charts::WriteSvgNumber(value, text)};
}

/// printf's rounding of the exact value, cut to the shortest form.
std::string WriteByPrintf(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.3f", value);
  std::string shortest = text;
  shortest.erase(shortest.find_last_not_of('0') + 1);
  if (shortest.back() == '.') shortest.pop_back();
  std::size_t const start = shortest[0] == '-' ? 1 : 0;
  if (shortest.size() > start + 1 && shortest[start] == '0') shortest.erase(start, 1);
  return shortest == "-0" ? "0" : shortest;
}

TEST(SvgNumber, IsTheShortestFormOfThreeDecimals) {
  struct Case {
    double value;
    char const* text;
  };
  double const infinity = std::numeric_limits<double>::infinity();
  Case const cases[] = {
      {0, "0"},
      {-0.0, "0"},
      {-0.0004, "0"},
      {0.5, ".5"},
      {-0.25, "-.25"},
      {1, "1"},
      {-3, "-3"},
      {10.1, "10.1"},
      {99.9996, "100"},
      {0.0005, ".001"},  // just above the half
      {1.0005, "1"},     // just below it
      {0.0625, ".062"},  // a true half goes to even
      {0.1875, ".188"},  // as above
      {-0.0625, "-.062"},
      {1000, "1000"},
      {1002.005, "1002.005"},
      {123456789.25, "123456789.25"},
      {1048576, "1048576"},
      {3e12, "3e+12"},
      {-1e300, "-3.4028234663852886e+38"},
      {infinity, "3.4028234663852886e+38"},
      {std::numeric_limits<double>::quiet_NaN(), "0"},
      {-std::numeric_limits<double>::quiet_NaN(), "0"},
  };
  for (Case const& test : cases) EXPECT_EQ(Write(test.value), test.text) << test.value;
}

TEST(SvgNumber, RoundsAsPrintfDoes) {
  std::uint64_t const seed = 20240607;
  std::mt19937_64 random(seed);
  for (int i = 0; i < 300'000; ++i) {
    auto const thousandths = static_cast<double>(random() >> (20 + random() % 40));
    double value = 0;
    switch (i % 4) {
      case 0:
        value = std::ldexp(static_cast<double>(random() >> 11), -12 - static_cast<int>(random() % 60));
        break;
      case 1:
        value = (thousandths + 0.5) / 1000;
        break;  // the nearest value to a half
      case 2:
        value = std::nextafter((thousandths + 0.5) / 1000, i % 8 == 2 ? 0 : 1e300);
        break;
      default:
        value = std::ldexp(static_cast<double>(random() % 4096), -4);
        break;  // true halves
    }
    if (random() % 2 != 0) value = -value;
    if (std::fabs(value) >= 0x1p41) continue;
    ASSERT_EQ(Write(value), WriteByPrintf(value)) << std::hexfloat << value << " seed " << seed;
  }
}

TEST(SvgNumber, ReadsBackExactlyBeyondThreeSignificantDecimals) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 10'000; ++i) {
    double const value = std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 60));
    if (value < 0x1p41) continue;
    std::string const text = Write(-value);
    ASSERT_EQ(std::strtod(text.c_str(), nullptr), -value) << text;
  }
}

}  // namespace
