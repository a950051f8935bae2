#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

/// A part of the calendar (UTC) such as "yearmonth" or "hoursminutes": what dates keep of themselves. A unit
/// that leaves out the year places all dates in 2012, a leap year that begins on a Sunday.
class TimeUnit {
 public:
  /// A name is put together of year, quarter, month, date, dayofyear, day (of the week), hours, minutes,
  /// seconds and milliseconds, in this order, perhaps behind "utc"; nullopt for another one, or one whose
  /// parts do not go together (a month and a quarter).
  static std::optional<TimeUnit> FromName(std::string_view name);

  /// The beginning of the unit that a date lies in.
  ort::core::OrtDateTime Floor(ort::core::OrtDateTime date) const;
  /// The beginning of the unit that follows the one that begins with a date.
  ort::core::OrtDateTime After(ort::core::OrtDateTime start) const;

  bool HasYear() const { return Has(0); }
  /// The parts with lines between them: "year-month".
  std::string GetName() const;
  /// The pattern of a label for one unit: "%b %Y" of "yearmonth".
  std::string GetLabelPattern() const;

 private:
  bool Has(int part) const { return (parts_ >> part & 1U) != 0; }

  unsigned parts_ = 0;  // bit n is the n-th part of a name
};

}  // namespace ostrel::charts
