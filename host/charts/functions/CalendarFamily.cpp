#include "charts/functions/CalendarInterval.h"
#include "charts/functions/ChartFamilies.h"
#include "charts/functions/TimeUnits.h"
#include "ostrelrtcore/builtins/Columns.h"

/// The beginning of the calendar's unit (UTC) that a date lies in; the empty date-time where that is before
/// the calendar's first day. Special rows stay special.
namespace ostrel::charts {
namespace {

using namespace ort::core;
using namespace ort::core::builtins;

// The units are told apart by type, as the operations of other families are by theirs.
template <std::int64_t ticks, std::int64_t months>
struct Unit {
  template <class T>
  struct Floor {
    T Apply(T date) const {
      constexpr auto interval =
          months != 0 ? CalendarInterval::OfMonths(months) : CalendarInterval::OfTicks(ticks);
      return interval.Floor(date);
    }
  };
};
using Year = Unit<0, 12>;
using Quarter = Unit<0, 3>;
using Month = Unit<0, 1>;
using Day = Unit<OrtTimeSpan::kTicksPerDay, 0>;
using Hour = Unit<OrtTimeSpan::kTicksPerHour, 0>;
using Minute = Unit<OrtTimeSpan::kTicksPerMinute, 0>;

template <class U>
BuiltinRow FloorRow(char const* name, char const* help) {
  return {.name = name,
          .inputs = {"dates"},
          .help = help,
          .example = R"("inputs": [{"DateTime": "2020-05-17T12:34:56.0000"}])",
          .registrations = Map<U::template Floor, StoreType::DateTime>()};
}

template <class Change>
Value ChangeDates(Value const& dates, Value const& unitName, Change const& change) {
  RowKinds const kinds(RequireColumn(*dates, StoreType::DateTime, "dates"));
  std::string const name = FetchStoreValue<OStringCore>(unitName).toUtf8();
  auto const unit = TimeUnit::FromName(name);
  if (!unit) ThrowError(OrtError_WrongValueKind, "no time unit is named \"" + name + "\"");
  auto const& rows = dates->AsTypedArray<OrtDateTime>();
  auto builder = factory::MakeColumnBuilder<OrtDateTime>(StoreTypeInfo::DateTime, rows.GetCount());
  auto const out = builder.GetValues();
  for (int row = 0; row < rows.GetCount(); ++row) {
    bool const isOrdinary = kinds[row] == SpecialKind::None;
    out[static_cast<std::size_t>(row)] = isOrdinary ? change(*unit, rows.GetElement(row)) : OrtDateTime();
    if (!isOrdinary) builder.SetSpecial(row, kinds[row]);
  }
  return builder.Finish();
}

Value FloorToUnit(Value const& dates, Value const& unit) {
  return ChangeDates(dates, unit, [](TimeUnit const& u, OrtDateTime date) { return u.Floor(date); });
}

Value NextUnit(Value const& starts, Value const& unit) {
  return ChangeDates(starts, unit, [](TimeUnit const& u, OrtDateTime start) { return u.After(start); });
}

}  // namespace

BuiltinFamily CalendarFamily() {
  return {
      "calendar",
      {
          FloorRow<Year>("yearFloor", "The first of January of the date's year."),
          FloorRow<Quarter>("quarterFloor", "The first day of the date's quarter."),
          FloorRow<Month>("monthFloor", "The first day of the date's month."),
          FloorRow<Day>("dayFloor", "Midnight of the date's day."),
          FloorRow<Hour>("hourFloor", "The beginning of the date's hour."),
          FloorRow<Minute>("minuteFloor", "The beginning of the date's minute."),
          {.name = "timeUnitFloor",
           .inputs = {"dates", "unit"},
           .help = "What a unit such as \"yearmonth\", \"month\", \"day\" or \"hoursminutes\" keeps of each "
                   "date; units without a year place all dates in 2012. An unknown unit throws 55.",
           .example = R"("inputs": [{"Array": {"type": "DateTime", "values": )"
                      R"(["2020-05-17T12:34:56.0000"]}}, {"String": "yearmonth"}])",
           .registrations = {Multinary<FloorToUnit>(
               {ArrayOf(StoreType::DateTime), Segment(StoreType::String)}, ArrayOf(StoreType::DateTime))}},
          {.name = "nextTimeUnit",
           .inputs = {"starts", "unit"},
           .help = "The beginning of the unit behind each one that begins with a date of the column. An "
                   "unknown unit throws 55.",
           .example = R"("inputs": [{"Array": {"type": "DateTime", "values": )"
                      R"(["2020-12-01T00:00:00.0000"]}}, {"String": "yearmonth"}])",
           .registrations = {Multinary<NextUnit>({ArrayOf(StoreType::DateTime), Segment(StoreType::String)},
                                                 ArrayOf(StoreType::DateTime))}},
      }};
}

}  // namespace ostrel::charts
