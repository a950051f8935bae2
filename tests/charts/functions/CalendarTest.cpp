#include <fmt/format.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "charts/functions/CalendarInterval.h"

namespace {

using namespace ostrel::charts;
using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;

constexpr std::int64_t kMillisecond = 10;
constexpr OrtDateTime kEmpty;
constexpr OrtDateTime kLast = OrtDateTime::FromValue(~std::uint64_t{0});

struct NamedInterval {
  char const* name;
  CalendarInterval interval;
};
constexpr NamedInterval kIntervals[] = {
    {"millisecond", CalendarInterval::OfTicks(kMillisecond)},
    {"5 seconds", CalendarInterval::OfTicks(5 * OrtTimeSpan::kTicksPerSecond)},
    {"minute", CalendarInterval::OfTicks(OrtTimeSpan::kTicksPerMinute)},
    {"6 hours", CalendarInterval::OfTicks(6 * OrtTimeSpan::kTicksPerHour)},
    {"day", CalendarInterval::OfTicks(OrtTimeSpan::kTicksPerDay)},
    {"2 days", CalendarInterval::OfTicks(2 * OrtTimeSpan::kTicksPerDay)},
    {"week", CalendarInterval::OfTicks(7 * OrtTimeSpan::kTicksPerDay)},
    {"month", CalendarInterval::OfMonths(1)},
    {"quarter", CalendarInterval::OfMonths(3)},
    {"year", CalendarInterval::OfMonths(12)},
    {"century", CalendarInterval::OfMonths(1200)},
};

TEST(CalendarInterval, BeginsWithItsUnit) {
  std::string text;
  OrtDateTime const date(2020, 5, 17, 12, 34, 56, 7899);
  for (auto const& [name, interval] : kIntervals) {
    text +=
        fmt::format("{}: {}, {}\n", name, interval.Floor(date).ToIsoText(), interval.After(date).ToIsoText());
  }
  EXPECT_EQ(text,
            "millisecond: 2020-05-17T12:34:56.7890, 2020-05-17T12:34:56.7900\n"
            "5 seconds: 2020-05-17T12:34:55.0000, 2020-05-17T12:35:00.0000\n"
            "minute: 2020-05-17T12:34:00.0000, 2020-05-17T12:35:00.0000\n"
            "6 hours: 2020-05-17T12:00:00.0000, 2020-05-17T18:00:00.0000\n"
            "day: 2020-05-17T00:00:00.0000, 2020-05-18T00:00:00.0000\n"
            "2 days: 2020-05-16T00:00:00.0000, 2020-05-18T00:00:00.0000\n"
            "week: 2020-05-17T00:00:00.0000, 2020-05-24T00:00:00.0000\n"
            "month: 2020-05-01T00:00:00.0000, 2020-06-01T00:00:00.0000\n"
            "quarter: 2020-04-01T00:00:00.0000, 2020-07-01T00:00:00.0000\n"
            "year: 2020-01-01T00:00:00.0000, 2021-01-01T00:00:00.0000\n"
            "century: 2000-01-01T00:00:00.0000, 2100-01-01T00:00:00.0000\n");
}

TEST(CalendarInterval, CountsYearsBelowZeroOn) {
  auto const century = CalendarInterval::OfMonths(1200);
  EXPECT_EQ(century.Floor(OrtDateTime(-1, 3, 1)), OrtDateTime(-100, 1, 1));
  EXPECT_EQ(century.Floor(OrtDateTime(0, 3, 1)), OrtDateTime(0, 1, 1));
  EXPECT_EQ(century.Ceiling(OrtDateTime(-100, 1, 1)), OrtDateTime(-100, 1, 1));
  EXPECT_EQ(century.Ceiling(OrtDateTime(-100, 1, 2)), OrtDateTime(0, 1, 1));
}

TEST(CalendarInterval, SaturatesAtTheEndsOfTheCalendar) {
  for (auto const& [name, interval] : kIntervals) {
    EXPECT_EQ(interval.Floor(kEmpty), kEmpty) << name;
    EXPECT_EQ(interval.After(kLast), kLast) << name;
    EXPECT_LE(interval.Floor(kLast), kLast) << name;
    EXPECT_GT(interval.After(kEmpty), kEmpty) << name;
  }
}

TEST(CalendarInterval, FloorsAreIdempotentAndNeverAfterTheInstant) {
  std::mt19937_64 random(2);
  for (int i = 0; i < 20'000; ++i) {
    // All of the calendar, and the years that charts show.
    OrtDateTime const date =
        i % 2 == 0 ? OrtDateTime::FromValue(random())
                   : OrtDateTime(1970, 1, 1, 0, 0, static_cast<int>(random() % 4'000'000'000 - 2'000'000'000),
                                 static_cast<int>(random() % 10'000));
    for (auto const& [name, interval] : kIntervals) {
      SCOPED_TRACE(std::string(name) + " " + date.ToIsoText());
      OrtDateTime const floor = interval.Floor(date);
      OrtDateTime const after = interval.After(date);
      ASSERT_LE(floor, date);
      ASSERT_GT(after, date);
      ASSERT_EQ(interval.Floor(floor), floor);
      ASSERT_EQ(interval.Ceiling(floor), floor);
      ASSERT_EQ(interval.Ceiling(date), floor == date ? date : after);
      // Nothing begins in between.
      ASSERT_EQ(interval.Floor(OrtDateTime::FromValue(after.GetValue() - 1)), floor);
      if (after != kLast) {
        ASSERT_EQ(interval.Floor(after), after);
      }
    }
  }
}

}  // namespace
