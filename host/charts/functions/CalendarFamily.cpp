#include "charts/functions/CalendarInterval.h"
#include "charts/functions/ChartFamilies.h"

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

}  // namespace

BuiltinFamily CalendarFamily() {
  return {"calendar",
          {
              FloorRow<Year>("yearFloor", "The first of January of the date's year."),
              FloorRow<Quarter>("quarterFloor", "The first day of the date's quarter."),
              FloorRow<Month>("monthFloor", "The first day of the date's month."),
              FloorRow<Day>("dayFloor", "Midnight of the date's day."),
              FloorRow<Hour>("hourFloor", "The beginning of the date's hour."),
              FloorRow<Minute>("minuteFloor", "The beginning of the date's minute."),
          }};
}

}  // namespace ostrel::charts
