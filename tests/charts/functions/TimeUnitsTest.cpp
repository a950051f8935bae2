#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "charts/functions/TimeUnits.h"

namespace {

using namespace ostrel::charts;
using ort::core::OrtDateTime;

// A Wednesday.
constexpr OrtDateTime kDate(2023, 11, 29, 13, 45, 56, 7'899);

TEST(TimeUnits, KeepTheirPartsOfADate) {
  struct {
    char const* name;
    char const* floor;
    char const* after;
    char const* pattern;
  } const cases[] = {
      {"year", "2023-01-01T00:00:00.0000", "2024-01-01T00:00:00.0000", "%Y"},
      {"quarter", "2012-10-01T00:00:00.0000", "2013-01-01T00:00:00.0000", "Q%q"},
      {"yearquarter", "2023-10-01T00:00:00.0000", "2024-01-01T00:00:00.0000", "%Y Q%q"},
      {"month", "2012-11-01T00:00:00.0000", "2012-12-01T00:00:00.0000", "%b"},
      {"yearmonth", "2023-11-01T00:00:00.0000", "2023-12-01T00:00:00.0000", "%b %Y"},
      {"monthdate", "2012-11-29T00:00:00.0000", "2012-11-30T00:00:00.0000", "%b %d"},
      {"yearmonthdate", "2023-11-29T00:00:00.0000", "2023-11-30T00:00:00.0000", "%b %d, %Y"},
      {"utcyearmonthdate", "2023-11-29T00:00:00.0000", "2023-11-30T00:00:00.0000", "%b %d, %Y"},
      {"date", "2012-01-29T00:00:00.0000", "2012-01-30T00:00:00.0000", "%d"},
      {"dayofyear", "2012-11-28T00:00:00.0000", "2012-11-29T00:00:00.0000", "%j"},
      {"yeardayofyear", "2023-11-29T00:00:00.0000", "2023-11-30T00:00:00.0000", "%Y %j"},
      {"day", "2012-01-04T00:00:00.0000", "2012-01-05T00:00:00.0000", "%a"},
      {"dayhours", "2012-01-04T13:00:00.0000", "2012-01-04T14:00:00.0000", "%a %H:00"},
      {"hours", "2012-01-01T13:00:00.0000", "2012-01-01T14:00:00.0000", "%H:00"},
      {"hoursminutes", "2012-01-01T13:45:00.0000", "2012-01-01T13:46:00.0000", "%H:%M"},
      {"minutesseconds", "2012-01-01T00:45:56.0000", "2012-01-01T00:45:57.0000", "00:%M:%S"},
      {"secondsmilliseconds", "2012-01-01T00:00:56.7890", "2012-01-01T00:00:56.7900", ":%S.%L"},
      {"yearmonthdatehoursminutesseconds", "2023-11-29T13:45:56.0000", "2023-11-29T13:45:57.0000",
       "%b %d, %Y %H:%M:%S"},
  };
  for (auto const& [name, floor, after, pattern] : cases) {
    auto const unit = TimeUnit::FromName(name);
    ASSERT_TRUE(unit) << name;
    EXPECT_EQ(unit->Floor(kDate).ToIsoText(), floor) << name;
    EXPECT_EQ(unit->After(unit->Floor(kDate)).ToIsoText(), after) << name;
    EXPECT_EQ(unit->GetLabelPattern(), pattern) << name;
  }
}

TEST(TimeUnits, AreNamedInOneOrder) {
  for (char const* name : {"", "utc", "moon", "monthyear", "yearyear", "quartermonth", "datedayofyear",
                           "yearday", "monthday", "quarterdate", "monthdayofyear", "week"}) {
    EXPECT_FALSE(TimeUnit::FromName(name)) << name;
  }
}

TEST(TimeUnits, WithAYearHoldEveryDateBetweenTheirEnds) {
  std::mt19937_64 random(11);
  std::uniform_int_distribution<std::uint64_t> day(2'200'000, 2'600'000);
  for (char const* name : {"year", "yearquarter", "yearmonth", "yearmonthdate", "yeardayofyear",
                           "yearmonthdatehours", "yearmonthdatehoursminutes"}) {
    auto const unit = *TimeUnit::FromName(name);
    for (int i = 0; i < 500; ++i) {
      auto const date =
          OrtDateTime::FromValue(day(random) * OrtDateTime::kTicksPerDay + random() % 864'000'000);
      auto const start = unit.Floor(date);
      EXPECT_LE(start, date) << name;
      EXPECT_LT(date, unit.After(start)) << name;
      EXPECT_EQ(unit.Floor(start), start) << name;
      EXPECT_EQ(unit.Floor(unit.After(start)), unit.After(start)) << name;
    }
  }
}

}  // namespace
