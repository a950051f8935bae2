#include "charts/functions/TimeUnits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <utility>

namespace ostrel::charts {

namespace {

using ort::core::OrtDateTime;

enum Part { Year, Quarter, Month, Date, DayOfYear, Day, Hours, Minutes, Seconds, Milliseconds };

// In the order of a name; "dayofyear" before "day", which it begins with.
constexpr std::string_view kPartNames[] = {"year", "quarter", "month",   "date",    "dayofyear",
                                           "day",  "hours",   "minutes", "seconds", "milliseconds"};

// A leap year that begins on a Sunday, for units without a year.
constexpr int kYearOfNone = 2012;
constexpr int kTicksPerMillisecond = 10;

constexpr unsigned Bit(Part part) { return 1U << part; }

// Days since Sunday. Day 4 of tick 0's week is a Saturday, as 1899-12-30 is.
int WeekDay(OrtDateTime date) { return static_cast<int>((date.GetDayCount() + 2) % 7); }

int DayOfTheYear(OrtDateTime date, int year) {
  return static_cast<int>(date.GetDayCount() - OrtDateTime(year, 1, 1).GetDayCount()) + 1;
}

bool GoTogether(unsigned parts) {
  constexpr unsigned kDays = Bit(Date) | Bit(DayOfYear) | Bit(Day);
  auto const countOf = [parts](unsigned some) { return std::popcount(parts & some); };
  if (countOf(Bit(Quarter) | Bit(Month)) > 1 || countOf(kDays) > 1) return false;
  // A quarter's days have no numbers of their own, a weekday none in a year.
  if (countOf(Bit(Quarter)) > 0 && countOf(kDays) > 0) return false;
  if (countOf(Bit(Day)) > 0 && countOf(Bit(Year) | Bit(Month)) > 0) return false;
  return countOf(Bit(DayOfYear)) == 0 || countOf(Bit(Month)) == 0;
}

}  // namespace

std::optional<TimeUnit> TimeUnit::FromName(std::string_view name) {
  if (name.starts_with("utc")) name.remove_prefix(3);
  TimeUnit unit;
  for (int part = Year; part <= Milliseconds; ++part) {
    std::string_view const word = kPartNames[part];
    if (!name.starts_with(word)) continue;
    unit.parts_ |= 1U << part;
    name.remove_prefix(word.size());
  }
  if (!name.empty() || unit.parts_ == 0 || !GoTogether(unit.parts_)) return std::nullopt;
  return unit;
}

OrtDateTime TimeUnit::Floor(OrtDateTime date) const {
  auto const parts = date.GetOrtDateTimeParts();
  int const year = Has(Year) ? parts.GetYear() : kYearOfNone;
  int month = 1;
  int day = 1;
  if (Has(Quarter)) month = (parts.GetMonth() - 1) / 3 * 3 + 1;
  if (Has(Month)) month = parts.GetMonth();
  if (Has(Date)) day = parts.GetDay();
  if (Has(DayOfYear)) day = DayOfTheYear(date, parts.GetYear());
  if (Has(Day)) day = 1 + WeekDay(date);
  int const fraction =
      Has(Milliseconds) ? parts.GetFraction() / kTicksPerMillisecond * kTicksPerMillisecond : 0;
  return {year,
          month,
          day,
          Has(Hours) ? parts.GetHour() : 0,
          Has(Minutes) ? parts.GetMinute() : 0,
          Has(Seconds) ? parts.GetSecond() : 0,
          fraction};
}

OrtDateTime TimeUnit::After(OrtDateTime start) const {
  auto const p = start.GetOrtDateTimeParts();
  int const smallest = static_cast<int>(std::bit_width(parts_)) - 1;
  int const months = smallest == Year ? 12 : smallest == Quarter ? 3 : smallest == Month ? 1 : 0;
  int const days = smallest == Date || smallest == DayOfYear || smallest == Day ? 1 : 0;
  return {p.GetYear(),
          p.GetMonth() + months,
          p.GetDay() + days,
          p.GetHour() + (smallest == Hours ? 1 : 0),
          p.GetMinute() + (smallest == Minutes ? 1 : 0),
          p.GetSecond() + (smallest == Seconds ? 1 : 0),
          p.GetFraction() + (smallest == Milliseconds ? kTicksPerMillisecond : 0)};
}

std::string TimeUnit::GetName() const {
  std::string name;
  for (int part = Year; part <= Milliseconds; ++part) {
    if ((parts_ & 1U << part) == 0) continue;
    name += (name.empty() ? "" : "-") + std::string(kPartNames[part]);
  }
  return name;
}

std::string TimeUnit::GetLabelPattern() const {
  struct Pattern {
    unsigned parts;
    std::string_view text;
  };
  // Parts that are said together come before each by itself.
  static constexpr Pattern kPatterns[] = {
      {Bit(Year) | Bit(Month) | Bit(Date), "%b %d, %Y "},
      {Bit(Year) | Bit(Month), "%b %Y "},
      {Bit(Hours) | Bit(Minutes), "%H:%M"},
      {Bit(Year), "%Y "},
      {Bit(Quarter), "Q%q "},
      {Bit(Month), "%b "},
      {Bit(Date), "%d "},
      {Bit(DayOfYear), "%j "},
      {Bit(Day), "%a "},
      {Bit(Hours), "%H:00"},
      {Bit(Minutes), "00:%M"},
      {Bit(Seconds), ":%S"},
      {Bit(Milliseconds), ".%L"},
  };
  std::string text;
  for (unsigned left = parts_; left != 0;) {
    auto const isNext = [left](Pattern const& pattern) {
      unsigned const upToLast = (1U << std::bit_width(pattern.parts)) - 1;
      return (left & upToLast) == pattern.parts;
    };
    Pattern const& next = *std::ranges::find_if(kPatterns, isNext);
    text += next.text;
    left &= ~next.parts;
  }
  if (text.ends_with(' ')) text.pop_back();
  return text;
}

}  // namespace ostrel::charts
