#include <gtest/gtest.h>

#include "services/DateFormat.h"

using namespace ostrel::services;
using ort::core::OrtDateTime;

namespace {

OrtDateTime Date(char const* text) { return OrtDateTime::FromIsoText(std::string_view(text)).value(); }

std::string Format(char const* date, char const* pattern) {
  return FormatDate(Date(date), OStringCore::fromUtf8(pattern).view()).toUtf8();
}

struct Row {
  char const* pattern;
  char const* text;
};

// All of 2020-03-01T15:04:05.0678, a Sunday.
constexpr Row kDirectives[] = {
    {"%a", "Sun"},
    {"%A", "Sunday"},
    {"%b", "Mar"},
    {"%B", "March"},
    {"%c", "3/1/2020, 3:04:05 PM"},
    {"%d", "01"},
    {"%e", " 1"},
    {"%f", "067800"},
    {"%g", "20"},
    {"%G", "2020"},
    {"%H", "15"},
    {"%I", "03"},
    {"%j", "061"},
    {"%L", "067"},
    {"%m", "03"},
    {"%M", "04"},
    {"%p", "PM"},
    {"%q", "1"},
    {"%Q", "1583075045067"},
    {"%s", "1583075045"},
    {"%S", "05"},
    {"%u", "7"},
    {"%U", "09"},
    {"%V", "09"},
    {"%w", "0"},
    {"%W", "08"},
    {"%x", "3/1/2020"},
    {"%X", "3:04:05 PM"},
    {"%y", "20"},
    {"%Y", "2020"},
    {"%Z", "+0000"},
    {"%%", "%"},
    {"%-d", "1"},
    {"%_d", " 1"},
    {"%0e", "01"},
    {"%-I:%M", "3:04"},
    {"%-j", "61"},
    {"%_H", "15"},
    {"%k", "k"},
    {"100%", "100"},
    {"%-", ""},
    {"", ""},
    {"Q%q '%y", "Q1 '20"},
    {"日%d", "日01"},
};

TEST(DateFormat, WritesEachDirective) {
  for (Row const& row : kDirectives)
    EXPECT_EQ(Format("2020-03-01T15:04:05.0678", row.pattern), row.text) << row.pattern;
}

struct DateRow {
  char const* date;
  char const* pattern;
  char const* text;
};

constexpr DateRow kDates[] = {
    {"2018-12-31", "%G-%V %g", "2019-01 19"},
    {"2021-01-03", "%G-%V %g", "2020-53 20"},
    {"2016-01-01", "%G-%V %U %W %j", "2015-53 00 00 001"},
    {"2012-12-31", "%U %W %j", "53 53 366"},
    {"2024-12-30", "%G-%V", "2025-01"},
    {"0001-01-01", "%Y %A", "0001 Monday"},
    {"1969-12-31T23:59:59.9990", "%s %Q", "-1 -1"},
    {"1900-02-28", "%a %j", "Wed 059"},
    {"2000-02-29", "%x", "2/29/2000"},
    {"2020-01-01T00:00:00", "%I %p", "12 AM"},
    {"2020-01-01T12:00:00", "%-I%p", "12PM"},
};

TEST(DateFormat, CountsWeeksAndHours) {
  for (DateRow const& row : kDates) EXPECT_EQ(Format(row.date, row.pattern), row.text) << row.date;
}

TEST(DateFormat, ReachesBothEndsOfTime) {
  EXPECT_EQ(FormatDate(OrtDateTime(), u"%Y-%m-%d %A %j %V").toUtf8(), "-4713-11-25 Tuesday 329 48");
  EXPECT_EQ(FormatDate(OrtDateTime::FromValue(UINT64_MAX), u"%Y").toUtf8(), "58450692");
}

// Consecutive days: weekdays follow one another, and the ISO week changes on Mondays alone.
TEST(DateFormat, StepsThroughFourHundredYears) {
  std::uint64_t const first = Date("1999-12-27").GetValue();
  std::string week;
  for (std::uint64_t day = 0; day < 146'097; ++day) {
    auto const date = OrtDateTime::FromValue(first + day * OrtDateTime::kTicksPerDay);
    ASSERT_EQ(FormatDate(date, u"%u").toUtf8(), std::to_string(day % 7 + 1));
    std::string const now = FormatDate(date, u"%G-%V").toUtf8();
    ASSERT_EQ(now != week, day % 7 == 0) << now;
    week = now;
  }
}

TEST(DateFormat, LabelsAnAxisByTheLargestUnit) {
  constexpr Row rows[] = {{"2020-01-01", "2020"},           {"2020-05-01", "May"},
                          {"2020-05-03", "May 03"},         {"2020-05-04", "Mon 04"},
                          {"2020-05-04T13:00:00", "01 PM"}, {"2020-05-04T13:30:00", "01:30"},
                          {"2020-05-04T13:30:07", ":07"},   {"2020-05-04T13:30:07.25", ".250"}};
  for (Row const& row : rows) EXPECT_EQ(FormatAxisDate(Date(row.pattern)).toUtf8(), row.text) << row.pattern;
}

}  // namespace
