#include <cmath>

#include "charts/data/DateText.h"
#include "charts/data/NumberText.h"
#include "charts/functions/ChartFamilies.h"
#include "charts/functions/DateNumbers.h"
#include "charts/functions/RowWise.h"

/// Parts of dates, dates of parts, and the count of milliseconds since 1970-01-01 (UTC) that stands for a
/// date among numbers. Special rows stay special.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

using PartReader = int (*)(OrtDateTime);

int DayOfYear(OrtDateTime date) {
  int const year = date.GetOrtDateTimeParts().GetYear();
  return static_cast<int>(date.GetDayCount() - OrtDateTime(year, 1, 1).GetDayCount());
}

// Sunday is 0; tick 0 lies on a Tuesday.
int Weekday(OrtDateTime date) { return static_cast<int>((date.GetDayCount() + 2) % 7); }

struct NamedPart {
  char const* name;
  PartReader read;
};

constexpr int kTicksPerMillisecond = 10;

// clang-format off
constexpr NamedPart kParts[] = {
    {"year", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetYear(); }},
    {"quarter", [](OrtDateTime date) -> int { return (date.GetOrtDateTimeParts().GetMonth() + 2) / 3; }},
    {"month", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetMonth() - 1; }},
    {"date", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetDay(); }},
    {"week", [](OrtDateTime date) -> int { return (DayOfYear(date) + 7 - Weekday(date)) / 7; }},
    {"dayofyear", [](OrtDateTime date) -> int { return DayOfYear(date) + 1; }},
    {"day", [](OrtDateTime date) -> int { return Weekday(date); }},
    {"hours", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetHour(); }},
    {"minutes", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetMinute(); }},
    {"seconds", [](OrtDateTime date) -> int { return date.GetOrtDateTimeParts().GetSecond(); }},
    {"milliseconds", [](OrtDateTime date) -> int {
       return date.GetOrtDateTimeParts().GetFraction() / kTicksPerMillisecond;
     }},
};
// clang-format on

Value ReadDatePart(Value const& dates, Value const& part) {
  std::string const name = FetchStoreValue<OStringCore>(part).toUtf8();
  for (NamedPart const& known : kParts) {
    if (name != known.name) continue;
    return MapRowsOf<double>(
        [read = known.read](OrtDateTime date) { return std::optional<double>(read(date)); },
        RowInput<OrtDateTime>(dates, "dates"));
  }
  ThrowError(OrtError_WrongValueKind, "no part of a date is named \"" + name + "\"");
}

Value MakeDates(Value const& years, Value const& months, Value const& days, Value const& hours,
                Value const& minutes, Value const& seconds, Value const& milliseconds) {
  auto const make = [](double year, double month, double day, double hour, double minute, double second,
                       double millisecond) {
    return DateOfParts({year, month, day, hour, minute, second, millisecond});
  };
  return MapRowsOf<OrtDateTime>(make, RowInput<double>(years, "years"), RowInput<double>(months, "months"),
                                RowInput<double>(days, "days"), RowInput<double>(hours, "hours"),
                                RowInput<double>(minutes, "minutes"), RowInput<double>(seconds, "seconds"),
                                RowInput<double>(milliseconds, "milliseconds"));
}

Value CountMilliseconds(Value const& dates) {
  return MapRowsOf<double>([](OrtDateTime date) { return std::optional(MillisecondsOf(date)); },
                           RowInput<OrtDateTime>(dates, "dates"));
}

Value DatesOfMilliseconds(Value const& numbers) {
  return MapRowsOf<OrtDateTime>(DateOfMilliseconds, RowInput<double>(numbers, "milliseconds"));
}

std::optional<OrtDateTime> ReadDate(RIndirectString const& text) {
  std::string const utf8 = text.Get().toUtf8();
  if (auto const date = ReadFreeDate(utf8)) return date->instant;
  NumberText const number = ReadNumber(TrimBlanks(utf8));
  if (number.kind == NumberText::Kind::None) return std::nullopt;
  bool const isYear =
      number.kind == NumberText::Kind::Integer && number.integer >= 1 && number.integer <= 9999;
  return isYear ? OrtDateTime(static_cast<int>(number.integer), 1, 1) : DateOfMilliseconds(number.ToReal());
}

Value ReadDates(Value const& texts) {
  return MapRowsOf<OrtDateTime>(ReadDate, RowInput<RIndirectString>(texts, "texts"));
}

}  // namespace

BuiltinFamily DatePartFamily() {
  using enum StoreType;
  KeySegmentType const any = AnyValue();
  return {
      "parts of dates",
      {
          {.name = "datePart",
           .inputs = {"dates", "part"},
           .help = "One part of each date as a real: year, quarter (from 1), month (from 0), date (of the "
                   "month), week (from Sunday; 0 before the first one), dayofyear, day (of the week, Sunday "
                   "0), hours, minutes, seconds or milliseconds. Another name throws 55.",
           .example = R"("inputs": [{"DateTime": "2020-05-17T12:34:56.0000"}, {"String": "month"}])",
           .registrations = {Multinary<ReadDatePart>({any, Segment(String)}, any)}},
          {.name = "dateOfParts",
           .inputs = {"years", "months", "days", "hours", "minutes", "seconds", "milliseconds"},
           .help = "The date of each row's parts; months count from 0, parts beyond their range carry over, "
                   "years 0 to 99 are those of the 20th century, and what is not finite gives a special row "
                   "of kind 1.",
           .example = R"("inputs": [{"Real64": 2020}, {"Real64": 1}, {"Real64": 30}, {"Real64": 12}, )"
                      R"({"Real64": 0}, {"Real64": 0}, {"Real64": 0}])",
           .registrations = {Multinary<MakeDates>({any, any, any, any, any, any, any}, any)}},
          {.name = "millisecondsOfDate",
           .inputs = {"dates"},
           .help = "Milliseconds since 1970-01-01 (UTC).",
           .example = R"("inputs": [{"DateTime": "2020-05-17T12:34:56.0000"}])",
           .registrations = {Multinary<CountMilliseconds>({any}, any)}},
          {.name = "dateOfMilliseconds",
           .inputs = {"milliseconds"},
           .help = "The date so many milliseconds after 1970-01-01 (UTC); NaN and infinities give a special "
                   "row of kind 1.",
           .example = R"("inputs": [{"Real64": 86400000}])",
           .registrations = {Multinary<DatesOfMilliseconds>({any}, any)}},
          {.name = "readDates",
           .inputs = {"texts"},
           .help =
               "The date that each text tells, in ISO form or a common one such as \"31 Jan 2012\"; whole "
               "numbers of 1 to 9999 are years, others milliseconds since 1970, and what is no date gives "
               "a special row of kind 1.",
           .example = R"("inputs": [{"String": "31 Jan 2012"}])",
           .registrations = {Multinary<ReadDates>({any}, any)}},
      }};
}

}  // namespace ostrel::charts
