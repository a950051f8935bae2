#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "charts/functions/LinearTicks.h"
#include "charts/functions/TickFormat.h"
#include "ostrelrtcore/ErrorOf.h"

namespace {

using namespace ostrel::charts;
using ort::core::Error;
using ort::core::ErrorOf;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

Texts FormatAll(Numbers const& ticks, std::u16string_view pattern) {
  TickFormat const format(ticks, pattern);
  Texts texts;
  for (double const tick : ticks) texts.push_back(format.Format(tick).toUtf8());
  return texts;
}

TEST(TickFormat, WritesTheTicksOfAnAxisAlike) {
  struct {
    Numbers ticks;
    std::u16string_view pattern;
    Texts texts;
  } const cases[] = {
      // Even ticks share their decimals.
      {{0, 0.5, 1}, u"", {"0.0", "0.5", "1.0"}},
      {{1, 0.5, 0}, u"", {"1.0", "0.5", "0.0"}},
      {{0, 0.25, 0.5}, u"", {"0.00", "0.25", "0.50"}},
      {{-5, 0, 5}, u"", {"−5", "0", "5"}},
      {{0, 1000, 2000}, u"", {"0", "1,000", "2,000"}},
      {{0, 1e10, 2e10}, u"", {"0", "10,000,000,000", "20,000,000,000"}},
      {{0.05, 1.05, 2.05}, u"", {"0.05", "1.05", "2.05"}},
      {{0.1 * 3, 0.1 * 4, 0.1 * 5}, u"", {"0.3", "0.4", "0.5"}},
      {{kNaN, 0, 0.5, kInfinity, 1}, u"", {"NaN", "0.0", "0.5", "Infinity", "1.0"}},
      {{0, 0.5}, u"", {"0.0", "0.5"}},
      {{0.5, 0}, u"", {"0.5", "0.0"}},
      {{-0.5, 0}, u"", {"−0.5", "0.0"}},
      // Others get each its shortest text; two that are a decade apart are a logarithmic axis'.
      {{0.001, 0.1, 1, 1000}, u"", {"0.001", "0.1", "1", "1,000"}},
      {{0.1, 1}, u"", {"0.1", "1"}},
      {{10, 0.5}, u"", {"10", "0.5"}},
      {{0.5, 2.0}, u"", {"0.5", "2.0"}},
      {{1, 1e9, 1e12}, u"", {"1", "1,000,000,000", "1e+12"}},
      {{1e-7, 1e-6, 1}, u"", {"1e-7", "0.000001", "1"}},
      {{2.5}, u"", {"2.5"}},
      {{3, 3}, u"", {"3", "3"}},
      {{}, u"", {}},
      // A pattern gets the precision that tells neighbours apart, unless it has one.
      {{0, 0.5, 1}, u"f", {"0.0", "0.5", "1.0"}},
      {{0, 0.05, 0.1}, u"%", {"0%", "5%", "10%"}},
      {{0, 0.005, 0.01}, u"%", {"0.0%", "0.5%", "1.0%"}},
      {{0, 0.5, 1}, u".2f", {"0.00", "0.50", "1.00"}},
      {{0, 500, 1000}, u"$,f", {"$0", "$500", "$1,000"}},
      {{1000, 1100, 1200}, u"e", {"1.0e+3", "1.1e+3", "1.2e+3"}},
      {{0.095, 0.1, 0.105}, u"e", {"9.50e-2", "1.00e-1", "1.05e-1"}},
      {{-5, 0, 5}, u"g", {"−5", "0", "5"}},
      {{0, 5}, u"g", {"0", "5"}},
      {{0, 1, 2}, u"d", {"0", "1", "2"}},
      // Of type s all have the unit of the largest.
      {{0, 500, 1000, 1500}, u"s", {"0.0k", "0.5k", "1.0k", "1.5k"}},
      {{0, 1e6, 2e6}, u"s", {"0M", "1M", "2M"}},
      // A precision of the pattern's own counts for every number by itself.
      {{0, 1e8, 2e8}, u"$.2s", {"$0.0", "$100M", "$200M"}},
      // Without one distance the zeros at the end are left out.
      {{1, 10, 100, 1000, 1e4}, u"s", {"1", "10", "100", "1k", "10k"}},
      {{0.1, 1, 10}, u"f", {"0.1", "1", "10"}},
      {{0.1, 1, 10}, u"~f", {"0.1", "1", "10"}},
      {{0.1, 1, 10}, u".1f", {"0.1", "1.0", "10.0"}},
  };
  for (auto const& [ticks, pattern, texts] : cases) {
    EXPECT_EQ(FormatAll(ticks, pattern), texts)
        << testing::PrintToString(ticks) << OStringCore(std::u16string(pattern)).toUtf8();
  }
}

TEST(TickFormat, RefusesAnIllFormedPattern) {
  auto const [code, message] = ErrorOf([] { TickFormat(Numbers{0, 1}, u"no format"); });
  EXPECT_EQ(code, 55);
  EXPECT_NE(message.find("no format"), std::string::npos) << message;
}

TEST(TickFormat, TellsTheTicksOfRandomDomainsApart) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> uniform(-1, 1);
  for (int i = 0; i < 3'000; ++i) {
    double const scale = std::pow(10, static_cast<int>(random() % 14) - 7);
    double const start = uniform(random) * scale;
    double const end = start + (0.01 + std::abs(uniform(random))) * scale;
    auto const ticks = LinearTicks(start, end, 2 + static_cast<double>(random() % 12));
    if (ticks.size() < 3) continue;
    for (std::u16string_view const pattern : {u"", u",f", u"s", u"%", u"e", u"g", u"r"}) {
      Texts const texts = FormatAll(ticks, pattern);
      ASSERT_EQ(std::set(texts.begin(), texts.end()).size(), ticks.size())
          << testing::PrintToString(texts) << testing::PrintToString(ticks);
    }
  }
}

}  // namespace
