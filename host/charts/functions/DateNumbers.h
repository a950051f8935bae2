#pragma once

#include <optional>

#include "ostrelrtcore/OrtDateTime.h"

/// Dates among numbers.
namespace ostrel::charts {

/// Milliseconds since 1970-01-01 (UTC).
double MillisecondsOf(ort::core::OrtDateTime date);
/// The nearest tick, saturating at both ends of the calendar; nullopt unless the number is finite.
std::optional<ort::core::OrtDateTime> DateOfMilliseconds(double milliseconds);

struct DateParts {
  double year;   ///< 0 to 99 are those of the 20th century
  double month;  ///< from 0
  double day;
  double hours;
  double minutes;
  double seconds;
  double milliseconds;
};

/// Fractions are cut off, and parts beyond their range carry over. Nullopt where a part is not finite or
/// beyond 10^8 (seconds and milliseconds: 10^13).
std::optional<ort::core::OrtDateTime> DateOfParts(DateParts const& parts);

}  // namespace ostrel::charts
