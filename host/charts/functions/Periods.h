#pragma once

#include <vector>

#include "ostrelrtcore/OrtDateTime.h"

namespace ostrel::charts {

/// Units of time (UTC) that follow one another from any of their beginnings on, in both directions: so many
/// months, the beginning the first of one, or else so many days.
class Periods {
 public:
  /// Throws OrtRuntimeException 2 unless one of months and days is above 0 and the other one 0.
  Periods(ort::core::OrtDateTime beginning, int months, int days);

  /// The beginning of the period that a date lies in; the empty date-time where that is out of range.
  ort::core::OrtDateTime Floor(ort::core::OrtDateTime date) const { return At(CountTo(date)); }
  /// The beginning of the period behind the one that a date lies in; saturates at the last date-time.
  ort::core::OrtDateTime After(ort::core::OrtDateTime date) const { return At(CountTo(date) + 1); }
  /// The beginnings from one date to another, both included, whose number, counted from `number` at the
  /// beginning that was given, is a multiple of `step`; at most 10,000, none for a step below 1.
  std::vector<ort::core::OrtDateTime> List(ort::core::OrtDateTime first, ort::core::OrtDateTime last,
                                           std::int64_t number, int step) const;

 private:
  std::int64_t CountTo(ort::core::OrtDateTime date) const;
  ort::core::OrtDateTime At(std::int64_t count) const;

  std::int64_t beginning_;  // in months since year 0 or in days of the day count
  int months_;
  int days_;
};

}  // namespace ostrel::charts
