#pragma once

#include "ostrelrtcore/StoreType.h"

// Where the ends of an axis lie, as plain numbers.
namespace OstrelTransforms::AxisExtents {

/// Dates are day numbers.
struct Axis {
  double minimum;
  double maximum;
  int modeCode;
  ort::core::StoreType fieldType;
  bool isLog;
  bool isReversed;
  /// The values whose positions are wanted; logarithms on a logarithmic axis.
  double rangeStart;
  double rangeEnd;
};

/// Positions are 0 at the domain's minimum and 1 at its maximum; the domain is in the field's units.
struct Extents {
  double low;
  double high;
  double zero;
  double domainMinimum;
  double domainMaximum;
};

/// Integer domains are rounded outwards; a date domain begins at midnight of its first day and, where its
/// maximum has a time of day, ends at the midnight after it. Mode 10 passes the ends through. An axis of one
/// point goes from 0 to 1, one of one instant 0.1 to either side of it. Low is above high for a
/// reversed axis, and below or equal for any other.
Extents Compute(Axis const& axis);

}  // namespace OstrelTransforms::AxisExtents
