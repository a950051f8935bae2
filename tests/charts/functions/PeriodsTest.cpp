#include <gtest/gtest.h>

#include "charts/functions/Periods.h"
#include "ostrelrtcore/OrtRuntimeException.h"

namespace {

using ort::core::OrtDateTime;
using ort::core::OrtTimeSpan;
using ostrel::charts::Periods;

OrtDateTime DayAfter(OrtDateTime day, int days) {
  return day + OrtTimeSpan::FromTicks(days * static_cast<std::int64_t>(OrtTimeSpan::kTicksPerDay));
}

// Every day for years, against beginnings that are walked from one to the next.
TEST(Periods, FollowOneAnotherFromAnyBeginning) {
  struct {
    OrtDateTime beginning;
    int months;
    int days;
  } const cases[] = {{OrtDateTime(2010, 10, 1), 12, 0}, {OrtDateTime(2004, 2, 1), 3, 0},
                     {OrtDateTime(1995, 7, 1), 1, 0},   {OrtDateTime(2030, 4, 1), 12, 0},
                     {OrtDateTime(2012, 1, 2), 0, 7},   {OrtDateTime(1990, 12, 30), 0, 7},
                     {OrtDateTime(2003, 3, 3), 0, 1}};
  for (auto const& [beginning, months, days] : cases) {
    Periods const periods(beginning, months, days);
    OrtDateTime const start(2001, 1, 1);
    OrtDateTime floor = periods.Floor(start);
    OrtDateTime next = periods.After(start);
    for (int day = 0; day < 2'000; ++day) {
      OrtDateTime const noon =
          DayAfter(start, day) + OrtTimeSpan::FromTicks(OrtTimeSpan::kTicksPerHour * std::int64_t{12});
      if (noon >= next) {
        auto const parts = next.GetOrtDateTimeParts();
        floor = next;
        next = months > 0 ? OrtDateTime(parts.GetYear(), parts.GetMonth() + months, 1) : DayAfter(next, days);
      }
      ASSERT_EQ(periods.Floor(noon), floor) << noon.ToIsoText();
      ASSERT_EQ(periods.After(noon), next) << noon.ToIsoText();
      ASSERT_EQ(periods.After(floor), next) << noon.ToIsoText();
    }
    EXPECT_EQ(periods.Floor(beginning), beginning);
  }
}

TEST(Periods, ListTheMultiplesOfAStep) {
  Periods const years(OrtDateTime(2005, 10, 1), 12, 0);
  auto const list = [&](int first, int last, int step) {
    std::string text;
    for (OrtDateTime const date : years.List(OrtDateTime(first, 1, 1), OrtDateTime(last, 12, 1), 2006, step))
      text += date.ToIsoText().substr(0, 8);
    return text;
  };
  EXPECT_EQ(list(2006, 2008, 1), "2006-10-2007-10-2008-10-");
  EXPECT_EQ(list(1997, 2011, 5), "1999-10-2004-10-2009-10-");
  EXPECT_EQ(list(2006, 2008, 5), "");
  EXPECT_EQ(list(2006, 2008, 0), "");
  EXPECT_EQ(years.List(OrtDateTime(2005, 10, 1), OrtDateTime(2005, 10, 1), 0, 1).size(), 1u);
  auto const last = OrtDateTime::FromDouble(1e300);
  EXPECT_LE(years.List(OrtDateTime(), last, 0, 1).size(), 10'000u);
  EXPECT_EQ(years.Floor(OrtDateTime()), OrtDateTime()) << "before the calendar's first day";
  EXPECT_THROW(Periods(OrtDateTime(), 1, 1), ort::core::OrtRuntimeException);
  EXPECT_THROW(Periods(OrtDateTime(), 0, 0), ort::core::OrtRuntimeException);
}

}  // namespace
