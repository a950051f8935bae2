#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "ostrelrtcore/OrtDateTime.h"

namespace ort::core {

void PrintTo(OrtDateTime date, std::ostream* out) {
  *out << date.ToIsoText() << " (" << date.GetValue() << ")";
}

namespace {

using Limits64 = std::numeric_limits<std::int64_t>;
constexpr auto kIntMin = std::numeric_limits<int>::min();
constexpr auto kIntMax = std::numeric_limits<int>::max();
constexpr auto kLast = OrtDateTime::FromValue(std::numeric_limits<std::uint64_t>::max());
constexpr std::uint64_t kDay = OrtDateTime::kTicksPerDay;

static_assert(sizeof(OrtDateTime) == 8 && std::is_trivially_copyable_v<OrtDateTime>);
static_assert(OrtDateTime(1899, 12, 30).GetDayCount() == 2'415'018);
static_assert(OrtDateTime(1970, 1, 1).GetDayCount() == 2'440'587);
static_assert(OrtDateTime().GetOrtDateTimeParts() == OrtDateTimeParts());
static_assert(OrtDateTime(-4713, 11, 25) == OrtDateTime() && OrtDateTime().GetValue() == 0);

OrtDateTime OfDay(std::uint64_t day) { return OrtDateTime::FromValue(day * kDay); }

OrtDateTime Rebuilt(OrtDateTimeParts const& p) {
  return {p.GetYear(), p.GetMonth(), p.GetDay(), p.GetHour(), p.GetMinute(), p.GetSecond(), p.GetFraction()};
}

/// A calendar that counts one day at a time, beginning at 1899-12-30.
struct CountingCalendar {
  int year = 1899, month = 12, day = 30;

  static int Length(int y, int m) {
    bool const leap = y % 400 == 0 || (y % 4 == 0 && y % 100 != 0);
    int const lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return lengths[m - 1];
  }
  void Forward() {
    if (++day <= Length(year, month)) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
  void Backward() {
    if (--day >= 1) return;
    if (--month < 1) {
      month = 12;
      --year;
    }
    day = Length(year, month);
  }
  bool Agrees(std::uint64_t dayCount) const {
    OrtDateTimeParts const expected(year, month, day, 0, 0, 0, 0);
    return OfDay(dayCount).GetOrtDateTimeParts() == expected &&
           OrtDateTime(year, month, day) == OfDay(dayCount);
  }
};

TEST(OrtDateTime, EveryDayFromTickZeroToTheYear4000IsTheOneThatCountingGives) {
  CountingCalendar calendar;
  for (std::uint64_t day = OrtDateTime::kDayNumberZero;; --day, calendar.Backward()) {
    ASSERT_TRUE(calendar.Agrees(day)) << calendar.year << '-' << calendar.month << '-' << calendar.day;
    if (day == 0) break;
  }
  calendar = {};
  for (std::uint64_t day = OrtDateTime::kDayNumberZero; calendar.year < 4000; ++day, calendar.Forward()) {
    ASSERT_TRUE(calendar.Agrees(day)) << calendar.year << '-' << calendar.month << '-' << calendar.day;
  }
}

TEST(OrtDateTime, TheCalendarRepeatsEvery400YearsOverTheWholeRange) {
  constexpr std::uint64_t cycle = 146'097 * kDay;
  std::mt19937_64 random(1);
  for (int i = 0; i < 200'000; ++i) {
    // Half of them in the last two cycles of the range.
    std::uint64_t const any = random();
    std::uint64_t const ticks = i % 2 == 0 ? any : kLast.GetValue() - any % (2 * cycle);
    OrtDateTimeParts const p = OrtDateTime::FromValue(ticks).GetOrtDateTimeParts();
    OrtDateTimeParts const q = OrtDateTime::FromValue(ticks % cycle).GetOrtDateTimeParts();
    int const years = static_cast<int>(ticks / cycle) * 400;
    ASSERT_EQ(p, OrtDateTimeParts(q.GetYear() + years, q.GetMonth(), q.GetDay(), q.GetHour(), q.GetMinute(),
                                  q.GetSecond(), q.GetFraction()))
        << ticks;
    ASSERT_EQ(Rebuilt(p).GetValue(), ticks);
  }
}

TEST(OrtDateTime, SplitsTheTimeOfDay) {
  OrtDateTime const date(2020, 2, 29, 23, 58, 57, 9876);
  EXPECT_EQ(date.GetOrtDateTimeParts(), OrtDateTimeParts(2020, 2, 29, 23, 58, 57, 9876));
  EXPECT_EQ(date.GetValue() % kDay, ((23 * 60 + 58) * 60 + 57) * 10'000u + 9876);
  EXPECT_TRUE(date.HasTime());
  EXPECT_EQ(date.TruncateTime(), OrtDateTime(2020, 2, 29));
  EXPECT_FALSE(date.TruncateTime().HasTime());
  EXPECT_TRUE(OrtDateTime(2020, 2, 29, 0, 0, 0, 1).HasTime());
}

TEST(OrtDateTime, MonthsBeyondTheYearCarryOver) {
  for (int month = 1; month <= 12; ++month) {
    for (int offset = -60; offset <= 60; ++offset) {
      int year = 2020;
      int plain = month + offset;
      for (; plain < 1; plain += 12) --year;
      for (; plain > 12; plain -= 12) ++year;
      for (int day : {-40, 0, 1, 29, 31, 400}) {
        EXPECT_EQ(OrtDateTime(2020, month + offset, day).GetDayCount(),
                  OrtDateTime(year, plain, 1).GetDayCount() + static_cast<std::uint64_t>(day) - 1)
            << month << '+' << offset << " day " << day;
      }
    }
  }
}

TEST(OrtDateTime, DaysAndTimesBeyondTheirRangeCarryOver) {
  std::mt19937_64 random(2);
  auto const any = [&](int reach) { return static_cast<int>(random() % (2u * reach + 1)) - reach; };
  for (int i = 0; i < 100'000; ++i) {
    int const day = any(500'000), hour = any(1'000'000), minute = any(kIntMax / 2), second = any(kIntMax / 2),
              fraction = any(kIntMax / 2);
    OrtTimeSpan const beyond(day - 1, hour, minute, second, fraction);
    ASSERT_EQ(OrtDateTime(12'000, 5, day, hour, minute, second, fraction), OrtDateTime(12'000, 5, 1) + beyond)
        << day << ' ' << hour << ' ' << minute << ' ' << second << ' ' << fraction;
  }
}

TEST(OrtDateTime, PartsSaturateAtBothEnds) {
  OrtDateTimeParts const p = kLast.GetOrtDateTimeParts();
  EXPECT_EQ(p, OrtDateTimeParts(58'450'692, 10, 28, 11, 2, 35, 1615));
  EXPECT_EQ(OrtDateTime(58'450'692, 10, 28, 11, 2, 35, 1616), kLast);
  EXPECT_EQ(OrtDateTime(58'450'692, 10, 29), kLast);
  EXPECT_EQ(OrtDateTime(-4713, 11, 25, 0, 0, 0, -1), OrtDateTime());
  EXPECT_EQ(OrtDateTime(-4713, 11, 24, 24, 0, 0, 1).GetValue(), 1u);
  EXPECT_EQ(OrtDateTime(kIntMax, kIntMax, kIntMax, kIntMax, kIntMax, kIntMax, kIntMax), kLast);
  EXPECT_EQ(OrtDateTime(kIntMin, kIntMin, kIntMin, kIntMin, kIntMin, kIntMin, kIntMin), OrtDateTime());
  EXPECT_EQ(OrtDateTime(kIntMax, kIntMin, 1), kLast);
  EXPECT_EQ(OrtDateTime(kIntMin, kIntMax, 1), OrtDateTime());
}

TEST(OrtDateTime, DayNumbersCountFrom1899) {
  struct Case {
    OrtDateTime date;
    double number;
  };
  for (auto const& [date, number] : {Case{OrtDateTime(1899, 12, 30), 0.0},
                                     {OrtDateTime(2020, 3, 1, 12), 43891.5},
                                     {OrtDateTime(1899, 12, 29, 18), -0.25},
                                     {OrtDateTime(), -2415018.0},
                                     {OrtDateTime(2000, 1, 1, 0, 0, 0, 1), (36526 * 864e6 + 1) / 864e6}}) {
    EXPECT_EQ(date.ToDouble(), number);
    EXPECT_EQ(OrtDateTime::FromDouble(number), date);
  }
  // Beyond a signed count of ticks the numbers still rise.
  EXPECT_EQ(OrtDateTime::FromValue(std::uint64_t{1} << 63).ToDouble(), (0x1p63 - 2415018 * 864e6) / 864e6);
  EXPECT_EQ(kLast.ToDouble(), (0x1p64 - 2415018 * 864e6) / 864e6);
}

TEST(OrtDateTime, DayNumbersOfTenThousandYearsReadBack) {
  std::mt19937_64 random(3);
  std::uint64_t const span = OrtDateTime(9999, 12, 31).GetValue();
  for (int i = 0; i < 200'000; ++i) {
    auto const date = OrtDateTime::FromValue(random() % span);
    ASSERT_EQ(OrtDateTime::FromDouble(date.ToDouble()), date);
  }
}

TEST(OrtDateTime, FromDoubleTakesTheNearestTickAndSaturates) {
  std::mt19937_64 random(4);
  std::uniform_real_distribution<double> number(-2'415'018, 100'000'000);
  for (int i = 0; i < 100'000; ++i) {
    double const day = number(random);
    long double const exact = (static_cast<long double>(day) + 2'415'018) * 864'000'000;
    long double const miss = exact - static_cast<long double>(OrtDateTime::FromDouble(day).GetValue());
    ASSERT_LE(std::abs(miss), 0.501L) << day;
  }
  auto const zero = OrtDateTime(1899, 12, 30);
  auto const ticksFrom1899 = [&](double ticks) {
    return (OrtDateTime::FromDouble(ticks / 864e6) - zero).GetTicks();
  };
  EXPECT_EQ(ticksFrom1899(0.49), 0);
  EXPECT_EQ(ticksFrom1899(0.51), 1);
  EXPECT_EQ(ticksFrom1899(-0.49), 0);
  EXPECT_EQ(ticksFrom1899(-0.51), -1);
  EXPECT_EQ(OrtDateTime::FromDouble(1.0 / 128 + 0.5 / 864e6 / 2), zero + OrtTimeSpan::FromTicks(6'750'000));

  double const infinity = std::numeric_limits<double>::infinity();
  for (double low : {-infinity, -1e300, -2415018.0, std::nan(""), -std::nan("")}) {
    EXPECT_EQ(OrtDateTime::FromDouble(low), OrtDateTime()) << low;
  }
  for (double high : {infinity, 1e300, 21'347'983'216.0, 21'347'983'215.5}) {
    EXPECT_EQ(OrtDateTime::FromDouble(high), kLast) << high;
  }
  EXPECT_EQ(OrtDateTime::FromDouble(21'347'983'215.25).GetValue(), 21'350'398'233u * kDay + kDay / 4);
}

TEST(OrtDateTime, SpansMoveDatesAndSaturate) {
  OrtDateTime const date(2021, 1, 3);
  EXPECT_EQ(date - OrtTimeSpan(3, 0, 0, 0), OrtDateTime(2020, 12, 31));
  EXPECT_EQ(date - OrtTimeSpan(-3, 0, 0, 0), OrtDateTime(2021, 1, 6));
  EXPECT_EQ(date + OrtTimeSpan(0, 25, -61, 1, -1), OrtDateTime(2021, 1, 3, 23, 59, 0, 9999));
  auto const most = OrtTimeSpan::FromTicks(Limits64::max());
  auto const least = OrtTimeSpan::FromTicks(Limits64::min());
  EXPECT_EQ((OrtDateTime() - least).GetValue(), std::uint64_t{1} << 63);
  EXPECT_EQ((kLast + least).GetValue(), (std::uint64_t{1} << 63) - 1);
  EXPECT_EQ(OrtDateTime() + most - least, kLast);
  EXPECT_EQ(date + least, OrtDateTime());
  EXPECT_EQ(date - most, OrtDateTime());
  EXPECT_EQ(kLast + OrtTimeSpan::FromTicks(1), kLast);

  EXPECT_EQ(date - OrtDateTime(2021, 1, 4), OrtTimeSpan(-1, 0, 0, 0));
  EXPECT_EQ(kLast - OrtDateTime(), most);
  EXPECT_EQ(OrtDateTime() - kLast, least);
  EXPECT_EQ(OrtDateTime() - OrtDateTime::FromValue(std::uint64_t{1} << 63), least);
}

TEST(OrtTimeSpan, PartsAddUpAndSaturate) {
  constexpr auto most = Limits64::max();
  constexpr auto least = Limits64::min();
  EXPECT_EQ(OrtTimeSpan(1, 2, 3, 4, 5).GetTicks(), 864'000'000 + 2 * 36'000'000 + 3 * 600'000 + 40'005);
  EXPECT_EQ(OrtTimeSpan(most, most, most, most, most).GetTicks(), most);
  EXPECT_EQ(OrtTimeSpan(least, least, least, least, least).GetTicks(), least);
  EXPECT_EQ(OrtTimeSpan(most, least, 0, 0).GetTicks(), most);
  EXPECT_EQ(OrtTimeSpan(0, most / 60, -(most / 60) * 60, 7).GetTicks(), 70'000);
  EXPECT_EQ((-OrtTimeSpan::FromTicks(least)).GetTicks(), most);
  EXPECT_EQ((OrtTimeSpan::FromTicks(most) + OrtTimeSpan::FromTicks(1)).GetTicks(), most);
  EXPECT_EQ((OrtTimeSpan::FromTicks(least) - OrtTimeSpan::FromTicks(1)).GetTicks(), least);

  OrtTimeSpan const before = -OrtTimeSpan(1, 1, 59, 59, 9999);
  EXPECT_EQ(before.GetWholeDays(), -1);
  EXPECT_EQ(before.GetWholeHours(), -25);
  EXPECT_EQ(before.GetWholeMinutes(), -25 * 60 - 59);
  EXPECT_EQ(before.GetWholeSeconds(), -(26 * 3600 - 1));
}

TEST(OrtDateTime, IsoTextsAreRead) {
  struct Case {
    char const* text;
    OrtDateTime date;
    bool carriesTime;
  };
  for (auto const& [text, date, carriesTime] : {
           Case{"2020-03-01", OrtDateTime(2020, 3, 1), false},
           {"0001-01-01", OrtDateTime(1, 1, 1), false},
           {"2000-02-29", OrtDateTime(2000, 2, 29), false},
           {"2020-03-01T00:00", OrtDateTime(2020, 3, 1), true},
           {"2020-03-01 12:34", OrtDateTime(2020, 3, 1, 12, 34), true},
           {"2020-03-01T12:34:56", OrtDateTime(2020, 3, 1, 12, 34, 56), true},
           {"2020-03-01T12:34:56.7", OrtDateTime(2020, 3, 1, 12, 34, 56, 7000), true},
           {"2020-03-01T12:34:56.00005", OrtDateTime(2020, 3, 1, 12, 34, 56, 1), true},
           {"2020-03-01T12:34:56.000049999", OrtDateTime(2020, 3, 1, 12, 34, 56), true},
           {"2020-12-31T23:59:59.999999999", OrtDateTime(2021, 1, 1), true},
           {"2020-03-01T12:34:56.7Z", OrtDateTime(2020, 3, 1, 12, 34, 56, 7000), true},
           {"2020-03-01T00:30+01:00", OrtDateTime(2020, 2, 29, 23, 30), true},
           {"2020-03-01T23:30:00-05:45", OrtDateTime(2020, 3, 2, 5, 15), true},
       }) {
    bool hadTime = !carriesTime;
    EXPECT_EQ(OrtDateTime::FromIsoText(text, &hadTime), date) << text;
    EXPECT_EQ(hadTime, carriesTime) << text;
    std::u16string const wide(text, text + std::char_traits<char>::length(text));
    EXPECT_EQ(OrtDateTime::FromIsoText(wide), date) << text;
  }
}

TEST(OrtDateTime, OtherTextsAreRefused) {
  for (char const* text : {"",
                           "2020",
                           "2020-03",
                           "2020-3-01",
                           "2020-13-01",
                           "2020-00-01",
                           "2020-02-30",
                           "2021-02-29",
                           "1900-02-29",
                           "2020-04-31",
                           "2020-09-31",
                           "2020-01-32",
                           "2020-01-00",
                           "0000-01-01",
                           "12020-01-01",
                           "-2020-01-01",
                           " 2020-01-01",
                           "2020-01-01 ",
                           "2020-01-01T",
                           "2020-01-01Z",
                           "2020-01-01T24:00",
                           "2020-01-01T12",
                           "2020-01-01T12:60",
                           "2020-01-01T12:00:60",
                           "2020-01-01T12:00:00.",
                           "2020-01-01T12:00:00.1234567890",
                           "2020-01-01T12:00.5",
                           "2020-01-01T12:00+1:00",
                           "2020-01-01T12:00+01:60",
                           "2020-01-01T12:00+24:00",
                           "2020-01-01T12:00ZZ",
                           "2020-01-01  12:00",
                           "2020-01-01t12:00",
                           "2020/01/01",
                           "20200101",
                           "+020-01-01",
                           "2020-01-0\xD9\xA1"}) {
    EXPECT_EQ(OrtDateTime::FromIsoText(text), std::nullopt) << text;
  }
  EXPECT_EQ(OrtDateTime::FromIsoText(u"2020-01-\u0660\u0661"), std::nullopt);
}

TEST(OrtDateTime, IsoTextsOfFourDigitYearsReadBack) {
  EXPECT_EQ(OrtDateTime(2020, 3, 1, 12).ToIsoText(), "2020-03-01T12:00:00.0000");
  EXPECT_EQ(OrtDateTime(7, 3, 1, 1, 2, 3, 4).ToIsoText(), "0007-03-01T01:02:03.0004");
  EXPECT_EQ(OrtDateTime(2020, 3, 1, 12).ToIsoDateText(), "2020-03-01");
  EXPECT_EQ(OrtDateTime().ToIsoText(), "-4713-11-25T00:00:00.0000");
  EXPECT_EQ(kLast.ToIsoText(), "+58450692-10-28T11:02:35.1615");
  std::mt19937_64 random(5);
  std::uint64_t const first = OrtDateTime(1, 1, 1).GetValue();
  std::uint64_t const span = OrtDateTime(10'000, 1, 1).GetValue() - first;
  for (int i = 0; i < 20'000; ++i) {
    auto const date = OrtDateTime::FromValue(first + random() % span);
    ASSERT_EQ(OrtDateTime::FromIsoText(date.ToIsoText()), date);
  }
}

TEST(OrtDateTime, ComparesByInstant) {
  std::vector<OrtDateTime> const rising = {OrtDateTime(), OrtDateTime(1899, 12, 30), OrtDateTime(2020, 1, 1),
                                           OrtDateTime::FromValue(std::uint64_t{1} << 63), kLast};
  for (std::size_t i = 0; i < rising.size(); ++i) {
    for (std::size_t j = 0; j < rising.size(); ++j) {
      EXPECT_EQ(rising[i] < rising[j], i < j);
      EXPECT_EQ(rising[i] > rising[j], i > j);
      EXPECT_EQ(rising[i] == rising[j], i == j);
    }
  }
  EXPECT_EQ(std::unordered_set<OrtDateTime>(rising.begin(), rising.end()).size(), rising.size());
}

}  // namespace
}  // namespace ort::core
