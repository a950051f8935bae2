#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "charts/functions/LinearTicks.h"
#include "charts/functions/TimeTicks.h"

namespace {

using namespace ostrel::charts;
using ort::core::OrtDateTime;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double DayNumber(std::string const& iso) { return OrtDateTime::FromIsoText(iso).value().ToDouble(); }

TEST(TimeTicks, BeginUnitsOfTheCalendar) {
  struct {
    char const *minimum, *maximum;
    double count;
    std::size_t size;
    char const *first, *second, *last;
  } const cases[] = {
      {"2020-01-01T00:00:00", "2020-01-01T00:00:00.01", 10, 11, "2020-01-01T00:00:00.0000",
       "2020-01-01T00:00:00.0010", "2020-01-01T00:00:00.0100"},
      {"2020-01-01T00:00:00.003", "2020-01-01T00:00:01.1", 5, 5, "2020-01-01T00:00:00.2000",
       "2020-01-01T00:00:00.4000", "2020-01-01T00:00:01.0000"},
      {"2020-01-01T00:00:00", "2020-01-01T00:00:04", 4, 5, "2020-01-01T00:00:00.0000",
       "2020-01-01T00:00:01.0000", "2020-01-01T00:00:04.0000"},
      {"2020-01-01T00:00:01", "2020-01-01T00:01:00", 4, 4, "2020-01-01T00:00:15.0000",
       "2020-01-01T00:00:30.0000", "2020-01-01T00:01:00.0000"},
      {"2020-01-01T12:28:27", "2020-01-01T13:34:12", 4, 5, "2020-01-01T12:30:00.0000",
       "2020-01-01T12:45:00.0000", "2020-01-01T13:30:00.0000"},
      {"2020-01-01T12:28:27", "2020-01-02T14:34:12", 4, 4, "2020-01-01T18:00:00.0000",
       "2020-01-02T00:00:00.0000", "2020-01-02T12:00:00.0000"},
      {"2020-01-01", "2020-01-05", 4, 5, "2020-01-01T00:00:00.0000", "2020-01-02T00:00:00.0000",
       "2020-01-05T00:00:00.0000"},
      // Pairs of days run on through the ends of months.
      {"2020-01-28", "2020-02-05", 4, 4, "2020-01-29T00:00:00.0000", "2020-01-31T00:00:00.0000",
       "2020-02-04T00:00:00.0000"},
      // Sundays.
      {"2020-01-01", "2020-02-01", 4, 4, "2020-01-05T00:00:00.0000", "2020-01-12T00:00:00.0000",
       "2020-01-26T00:00:00.0000"},
      {"2020-01-18", "2020-05-01", 4, 4, "2020-02-01T00:00:00.0000", "2020-03-01T00:00:00.0000",
       "2020-05-01T00:00:00.0000"},
      {"2019-12-18", "2020-11-02", 4, 4, "2020-01-01T00:00:00.0000", "2020-04-01T00:00:00.0000",
       "2020-10-01T00:00:00.0000"},
      {"1969-12-18", "1972-06-01", 3, 3, "1970-01-01T00:00:00.0000", "1971-01-01T00:00:00.0000",
       "1972-01-01T00:00:00.0000"},
      {"1900-03-01", "2001-01-01", 10, 10, "1910-01-01T00:00:00.0000", "1920-01-01T00:00:00.0000",
       "2000-01-01T00:00:00.0000"},
      {"0113-01-01", "2020-01-01", 4, 4, "0500-01-01T00:00:00.0000", "1000-01-01T00:00:00.0000",
       "2000-01-01T00:00:00.0000"},
      {"2020-02-01", "2020-01-01", 4, 4, "2020-01-26T00:00:00.0000", "2020-01-19T00:00:00.0000",
       "2020-01-05T00:00:00.0000"},
  };
  for (auto const& [minimum, maximum, count, size, first, second, last] : cases) {
    SCOPED_TRACE(std::string(minimum) + " to " + maximum);
    auto const ticks = TimeTicks(DayNumber(minimum), DayNumber(maximum), count);
    ASSERT_EQ(ticks.size(), size);
    EXPECT_EQ(ticks[0].ToIsoText(), first);
    EXPECT_EQ(ticks[1].ToIsoText(), second);
    EXPECT_EQ(ticks.back().ToIsoText(), last);
  }
}

TEST(TimeTicks, AreNoneWithoutADomainOrACount) {
  for (auto const& [minimum, maximum, count] : {std::array{0.0, 1.0, 0.0},
                                                {0, 1, -1},
                                                {0, 1, kNaN},
                                                {kNaN, 1, 5},
                                                {0, kInfinity, 5},
                                                {-kInfinity, 0, 5}}) {
    EXPECT_TRUE(TimeTicks(minimum, maximum, count).empty()) << minimum << ", " << maximum << ", " << count;
  }
  EXPECT_EQ(TimeTicks(43'831, 43'831, 5), std::vector{OrtDateTime(2020, 1, 1)});
}

TEST(TimeTicks, StayInTheCalendarAndUnderTheLimit) {
  for (double const reach : {1e5, 1e8, 1e12, 1e300}) {
    for (double const count : {1.0, 5.0, 100.0, 1e9, kInfinity}) {
      auto const ticks = TimeTicks(-reach, reach, count);
      EXPECT_LE(ticks.size(), static_cast<std::size_t>(kMostTicks));
      EXPECT_GE(ticks.size(), 1U) << reach << ", " << count;
      EXPECT_TRUE(std::ranges::adjacent_find(ticks, std::greater_equal<>()) == ticks.end());
    }
  }
}

TEST(TimeTicks, OfRandomDomainsAreSortedInsideAndAboutAsManyAsAsked) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> uniform(0, 1);
  for (int i = 0; i < 5'000; ++i) {
    double const start = -100'000 + 200'000 * uniform(random);
    double const end = start + std::pow(10, -6 + 11 * uniform(random));
    double const count = 1 + static_cast<double>(random() % 20);
    SCOPED_TRACE(testing::Message() << std::hexfloat << start << " to " << end << ", " << count);
    auto ticks = TimeTicks(start, end, count);
    ASSERT_TRUE(std::ranges::adjacent_find(ticks, std::greater_equal<>()) == ticks.end());
    ASSERT_LE(static_cast<double>(ticks.size()), 2.5 * count + 2);
    if (count > 2) {
      ASSERT_GE(static_cast<double>(ticks.size()), std::floor(count / 2.6));
    }
    if (!ticks.empty()) {
      ASSERT_GE(ticks.front(), OrtDateTime::FromDouble(start));
      ASSERT_LE(ticks.back(), OrtDateTime::FromDouble(end));
    }
    std::ranges::reverse(ticks);
    ASSERT_EQ(TimeTicks(end, start, count), ticks);
  }
}

}  // namespace
