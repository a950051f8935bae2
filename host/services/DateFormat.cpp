#include "services/DateFormat.h"

#include <cstdint>
#include <string>

namespace ostrel::services {

using namespace ort::core;

namespace {

constexpr std::u16string_view kMonths[] = {u"January",   u"February", u"March",    u"April",
                                           u"May",       u"June",     u"July",     u"August",
                                           u"September", u"October",  u"November", u"December"};
constexpr std::u16string_view kWeekdays[] = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                             u"Thursday", u"Friday", u"Saturday"};
constexpr std::size_t kShortName = 3;

struct Date {
  explicit Date(OrtDateTime value) : date(value), parts(value.GetOrtDateTimeParts()) {
    day = static_cast<std::int64_t>(value.GetDayCount());
    // 1899-12-30 was a Saturday.
    constexpr std::int64_t shift = 7 - (OrtDateTime::kDayNumberZero - 6) % 7;
    weekday = static_cast<int>((day + shift) % 7);
    firstOfYear = static_cast<std::int64_t>(OrtDateTime(parts.GetYear(), 1, 1).GetDayCount());
    // The year of tick 0 begins before it.
    if (parts.GetYear() == kFirstYear) firstOfYear = -kDaysBeforeTickZero;
    dayOfYear = static_cast<int>(day - firstOfYear);
  }
  std::int64_t GetUnixMilliseconds() const {
    constexpr std::int64_t epoch = 25'569 + static_cast<std::int64_t>(OrtDateTime::kDayNumberZero);
    auto const time = static_cast<std::int64_t>(date.GetValue() % OrtDateTime::kTicksPerDay);
    return (day - epoch) * 86'400'000 + time / 10;
  }

  static constexpr int kFirstYear = -4713;
  static constexpr int kDaysBeforeTickZero = 328;

  OrtDateTime date;
  OrtDateTimeParts parts;
  std::int64_t day;
  std::int64_t firstOfYear;
  int weekday;    // Sunday is 0
  int dayOfYear;  // from 0
};

void AppendPadded(std::u16string& out, std::int64_t value, char16_t pad, std::size_t width) {
  std::string const digits = std::to_string(value < 0 ? -value : value);
  if (value < 0) out += u'-';
  if (pad != 0 && digits.size() < width) out.append(width - digits.size(), pad);
  out.append(digits.begin(), digits.end());
}

// The Thursday of a date's ISO week tells the week's year.
struct IsoWeek {
  explicit IsoWeek(Date const& date) {
    int const fromMonday = (date.weekday + 6) % 7;
    std::int64_t const thursday = date.day + 3 - fromMonday;
    year = date.parts.GetYear();
    std::int64_t first = date.firstOfYear;
    if (thursday < first) {
      first -= IsLeapYear(--year) ? 366 : 365;
    } else if (thursday - first >= (IsLeapYear(year) ? 366 : 365)) {
      first += IsLeapYear(year++) ? 366 : 365;
    }
    week = static_cast<int>((thursday - first) / 7) + 1;
  }
  static bool IsLeapYear(int year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }
  int year;
  int week;
};

void AppendNumber(std::u16string& out, Date const& date, char16_t directive, char16_t pad) {
  OrtDateTimeParts const& parts = date.parts;
  int const year = parts.GetYear();
  int const hour = parts.GetHour();
  switch (directive) {
    case u'd':
    case u'e':
      return AppendPadded(out, parts.GetDay(), pad, 2);
    case u'f':
      return AppendPadded(out, std::int64_t{parts.GetFraction()} * 100, pad, 6);
    case u'g':
      return AppendPadded(out, IsoWeek(date).year % 100, pad, 2);
    case u'G':
      return AppendPadded(out, IsoWeek(date).year, pad, 4);
    case u'H':
      return AppendPadded(out, hour, pad, 2);
    case u'I':
      return AppendPadded(out, hour % 12 == 0 ? 12 : hour % 12, pad, 2);
    case u'j':
      return AppendPadded(out, date.dayOfYear + 1, pad, 3);
    case u'L':
      return AppendPadded(out, parts.GetFraction() / 10, pad, 3);
    case u'm':
      return AppendPadded(out, parts.GetMonth(), pad, 2);
    case u'M':
      return AppendPadded(out, parts.GetMinute(), pad, 2);
    case u'q':
      return AppendPadded(out, (parts.GetMonth() + 2) / 3, 0, 0);
    case u'Q':
      return AppendPadded(out, date.GetUnixMilliseconds(), 0, 0);
    case u's': {
      std::int64_t const milliseconds = date.GetUnixMilliseconds();
      return AppendPadded(out, (milliseconds - (milliseconds % 1000 + 1000) % 1000) / 1000, 0, 0);
    }
    case u'S':
      return AppendPadded(out, parts.GetSecond(), pad, 2);
    case u'u':
      return AppendPadded(out, date.weekday == 0 ? 7 : date.weekday, 0, 0);
    case u'U':
      return AppendPadded(out, (date.dayOfYear + 7 - date.weekday) / 7, pad, 2);
    case u'V':
      return AppendPadded(out, IsoWeek(date).week, pad, 2);
    case u'w':
      return AppendPadded(out, date.weekday, 0, 0);
    case u'W':
      return AppendPadded(out, (date.dayOfYear + 7 - (date.weekday + 6) % 7) / 7, pad, 2);
    case u'y':
      return AppendPadded(out, year % 100, pad, 2);
    case u'Y':
      return AppendPadded(out, year, pad, 4);
    default:
      out += directive;
  }
}

void AppendByPattern(std::u16string& out, Date const& date, std::u16string_view pattern);

void AppendDirective(std::u16string& out, Date const& date, char16_t directive, char16_t pad) {
  auto const month = static_cast<std::size_t>(date.parts.GetMonth() - 1);
  auto const weekday = static_cast<std::size_t>(date.weekday);
  switch (directive) {
    case u'a':
      out += kWeekdays[weekday].substr(0, kShortName);
      return;
    case u'A':
      out += kWeekdays[weekday];
      return;
    case u'b':
      out += kMonths[month].substr(0, kShortName);
      return;
    case u'B':
      out += kMonths[month];
      return;
    case u'c':
      return AppendByPattern(out, date, u"%x, %X");
    case u'p':
      out += date.parts.GetHour() < 12 ? u"AM" : u"PM";
      return;
    case u'x':
      return AppendByPattern(out, date, u"%-m/%-d/%Y");
    case u'X':
      return AppendByPattern(out, date, u"%-I:%M:%S %p");
    case u'Z':
      out += u"+0000";
      return;
    default:
      AppendNumber(out, date, directive, pad);
  }
}

void AppendByPattern(std::u16string& out, Date const& date, std::u16string_view pattern) {
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    if (pattern[at] != u'%') {
      out += pattern[at];
      continue;
    }
    if (++at == pattern.size()) return;
    char16_t pad = pattern[at] == u'e' ? u' ' : u'0';
    if (pattern[at] == u'-' || pattern[at] == u'_' || pattern[at] == u'0') {
      pad = pattern[at] == u'-' ? u'\0' : pattern[at] == u'_' ? u' ' : u'0';
      if (++at == pattern.size()) return;
    }
    AppendDirective(out, date, pattern[at], pad);
  }
}

}  // namespace

OStringCore FormatDate(OrtDateTime date, std::u16string_view pattern) {
  std::u16string out;
  AppendByPattern(out, Date(date), pattern);
  return OStringCore(std::move(out));
}

std::u16string_view GetAxisDatePattern(OrtDateTime date) {
  Date const at(date);
  OrtDateTimeParts const& parts = at.parts;
  if (parts.GetFraction() != 0) return u".%L";
  if (parts.GetSecond() != 0) return u":%S";
  if (parts.GetMinute() != 0) return u"%I:%M";
  if (parts.GetHour() != 0) return u"%I %p";
  if (parts.GetDay() != 1) return at.weekday == 0 ? u"%b %d" : u"%a %d";
  return parts.GetMonth() != 1 ? u"%B" : u"%Y";
}

OStringCore FormatAxisDate(OrtDateTime date) { return FormatDate(date, GetAxisDatePattern(date)); }

}  // namespace ostrel::services
