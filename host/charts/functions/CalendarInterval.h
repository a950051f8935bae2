#pragma once

#include <cstdint>

#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

/// A unit of the calendar (UTC) that divides time: a fixed number of ticks, or a number of months.
class CalendarInterval {
 public:
  /// Intervals of whole milliseconds up to a week. Weeks begin on Sundays, pairs of days on days whose number
  /// since 1970-01-01 is even, anything shorter is counted from midnight.
  static constexpr CalendarInterval OfTicks(std::int64_t ticks) {
    return {static_cast<std::uint64_t>(ticks), 0};
  }
  /// Months are counted from January, years from year 0.
  static constexpr CalendarInterval OfMonths(std::int64_t months) { return {0, months}; }

  /// The interval's beginning at or before the date; the empty date-time where that is out of range.
  ort::core::OrtDateTime Floor(ort::core::OrtDateTime date) const;
  /// The first beginning after the date; saturates at the last date-time.
  ort::core::OrtDateTime After(ort::core::OrtDateTime date) const;
  /// The first beginning at or after the date.
  ort::core::OrtDateTime Ceiling(ort::core::OrtDateTime date) const {
    return Floor(date) == date ? date : After(date);
  }

 private:
  constexpr CalendarInterval(std::uint64_t ticks, std::int64_t months) : ticks_(ticks), months_(months) {}
  std::uint64_t TicksInto(ort::core::OrtDateTime date) const;
  std::int64_t FloorMonth(ort::core::OrtDateTime date) const;

  std::uint64_t ticks_;
  std::int64_t months_;
};

}  // namespace ostrel::charts
