#pragma once

#include "ostreltransforms/FunctorInputs.h"

// Columns of range tuples made wider: to hold further values, by a share, by degrees. Ranges are read and
// written by the rules of ScaleRange.
namespace OstrelTransforms {

// Widens each range to hold further values and then by a share of its extent at each end, so that no mark
// stands on the edge of its pane. The inputs, by position:
//
//   0  ranges: a column of range tuples
//   1  least: the least further value of each range, a Real64 column in the field's units (dates as day
//      numbers); special for none
//   2  greatest: the greatest one, a Real64 column; special for none
//   3  shareBelow (Real64): of the extent, put below the minimum; finite, not below 0
//   4  shareAbove (Real64): of the extent, put above the maximum
//   5  stopsAtZero (Bool): a share doesn't carry an end past 0 (bars stand on their axis); without effect on
//   a
//      logarithmic scale, which has no 0
//   6  keepsLogarithms (Bool): a logarithmic range's ends are given as logarithms, as extendPointRanges does
//      and interpolateIndexedRange reads them
//
// On the range's scale, with the further values that are not missing:
//   minimum' = min(minimum, least, greatest),  maximum' = max(maximum, least, greatest)
//   a range of one point is opened as extendPointRanges does
//   minimum" = minimum' - shareBelow * (maximum' - minimum'),  and the maximum alike upwards
//
// A column of range tuples, one a row. A missing end counts as the other one; where both are missing and
// there are no further values, the range is given back as it is. Of no rows the column is empty. Columns of
// unequal length throw 259, shares that are negative or not finite 2.
Value ExtendRangeColumn(Value const& ranges, Value const& least, Value const& greatest, double shareBelow,
                        double shareAbove, bool stopsAtZero, bool keepsLogarithms);

// Widens ranges of longitude by degrees, so that the marks of a map have land around them. The inputs, by
// position:
//
//   0  ranges: a column of range tuples, in degrees of longitude
//   1  degrees (Real64): at the latitude of 0, put below each minimum and above each maximum; finite, not
//      below 0
//   2  latitudes: a column of range tuples in degrees of latitude, one for each range, or an empty column
//   3  wraps (Bool): the map goes on past 180 degrees
//
// With a range of latitudes the degrees are divided by the cosine of its middle (up to 85.05112878 degrees
// north and south), so that they are as long there, on the ground and on a Mercator map, as the same
// degrees of latitude are: the padding of both directions looks equal.
//
// On a map that wraps, a minimum above the maximum is a range across the 180th meridian, whose maximum counts
// 360 degrees more; ends may pass 180, and a range that would exceed 360 degrees becomes 360 around its
// middle. Elsewhere no end is moved past -180 or 180.
//
// A column of range tuples, one a row; ranges with a missing end, and logarithmic ones, are given back as
// they are, and missing latitudes leave the degrees. Other latitudes than none or one a range throw 259,
// degrees that are negative or not finite 2.
Value ExtendXRangesByDegree(Value const& ranges, double degrees, Value const& latitudes, bool wraps);

// Widens ranges of latitude by degrees. The inputs, by position:
//
//   0  ranges: a column of range tuples, in degrees of latitude
//   1  degrees (Real64): taken off each minimum and put on each maximum; finite, not below 0
//
// No end is moved past -90 or 90. A column of range tuples, one a row; ranges with a missing end, and
// logarithmic ones, are given back as they are. Degrees that are negative or not finite throw 2.
Value ExtendYRangesByDegree(Value const& ranges, double degrees);

}  // namespace OstrelTransforms
