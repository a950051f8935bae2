#include <fmt/format.h>

#include <cmath>

#include "charts/document/JsonObjectReader.h"
#include "charts/document/TransformReaders.h"
#include "charts/functions/TimeUnits.h"

namespace ostrel::charts {

namespace {

constexpr NumberRange kMonths{.minimum = 1, .maximum = 12};
constexpr NumberRange kSteps{.minimum = 1, .maximum = 10'000};

constexpr NamedValue<int> kWeekDays[] = {{"sunday", 1},   {"monday", 2}, {"tuesday", 3}, {"wednesday", 4},
                                         {"thursday", 5}, {"friday", 6}, {"saturday", 7}};

constexpr NamedValue<char const*> kIntervals[] = {{"year", "year"},
                                                  {"quarter", "yearquarter"},
                                                  {"month", "yearmonth"},
                                                  {"week", "yearweek"},
                                                  {"day", "yearmonthdate"}};

int ReadWhole(JsonValue const& value, NumberRange const& range) {
  double const number = value.ReadNumber(range);
  if (number != std::floor(number)) value.Fail(fmt::format("expects a whole number, not {}", number));
  return static_cast<int>(number);
}

void AddStarts(JsonObjectReader& reader, TimeUnitSpec& unit) {
  reader.On("fiscalStart", [&](JsonValue const& month) { unit.fiscalStart = ReadWhole(month, kMonths); })
      .OneOf("weekStart", unit.weekStart, std::span<NamedValue<int> const>(kWeekDays));
}

void CheckStarts(JsonValue const& value, TimeUnitSpec const& unit) {
  if (unit.fiscalStart && unit.name != "year" && unit.name != "yearquarter")
    value.FailAt("fiscalStart", "is for years and for quarters of a year");
  if (value.Has("weekStart") && !unit.IsWeek()) value.FailAt("weekStart", "is for weeks");
}

}  // namespace

TimeUnitSpec ReadTimeUnit(JsonValue const& value) {
  TimeUnitSpec unit;
  if (value.IsOff()) return unit;
  if (value.IsObject()) {
    std::optional<bool> isUtc;
    JsonObjectReader reader(value);
    reader.Text("unit", unit.name)
        .Bool("utc", isUtc)
        .Refuse("step", "is not supported; use a larger unit")
        .Refuse("maxbins", "is not supported; use a unit")
        .Refuse("binned", "is not supported; leave it out");
    AddStarts(reader, unit);
    reader.Read();
    if (unit.name.empty()) value.FailAt("unit", "is missing");
  } else {
    unit.name = value.ReadText();
  }
  if (unit.name == "utcyearweek") unit.name = "yearweek";
  if (!unit.IsWeek() && !TimeUnit::FromName(unit.name)) {
    value.Fail(
        fmt::format("\"{}\" is not supported; use a unit such as year, yearmonth, yearmonthdate, yearweek, "
                    "quarter, month, date, day, hours",
                    unit.name));
  }
  CheckStarts(value, unit);
  return unit;
}

TickInterval ReadTickInterval(JsonValue const& value) {
  TickInterval interval;
  auto const readName = [&](JsonValue const& name) {
    interval.unit.name = name.ReadOneOf(std::span<NamedValue<char const*> const>(kIntervals));
  };
  if (!value.IsObject()) {
    readName(value);
    return interval;
  }
  JsonObjectReader reader(value);
  reader.On("interval", readName).On("step", [&](JsonValue const& step) {
    interval.step = ReadWhole(step, kSteps);
  });
  AddStarts(reader, interval.unit);
  reader.Read();
  if (interval.unit.empty()) value.FailAt("interval", "is missing");
  CheckStarts(value, interval.unit);
  return interval;
}

}  // namespace ostrel::charts
