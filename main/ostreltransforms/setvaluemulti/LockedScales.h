#pragma once

#include <vector>

#include "ostreltransforms/FunctorInputs.h"

// Axes whose scales are locked together, so that equal lengths in their panes are equal amounts; and the
// amount of a pixel. Ranges are read and written by the rules of ScaleRange.
namespace OstrelTransforms {

// Widens the ranges of axes that are locked together to one number of units a pixel. The inputs, by position;
// each column has a row an axis:
//
//   0  ranges: a column of range tuples
//   1  lengths: the panes' pixels along the axes, a Real64 column
//   2  isLocked: a Bool column; axes that are not locked keep their ranges
//   3  groups: an Int32 or Int64 column; axes with one number are locked together
//   4  isHorizontal: a Bool column: the axis' direction
//   5  reversed: a Bool column: the axis' minimum is at the pane's end
//   6  anchors: a Real64 column: the fraction of the pane, from its start, at which what is added is parted
//      (0 leaves the range at the start, 1 at the end, 0.5 in the middle); special for 0.5
//   7  ratio (Real64): the units a pixel of a vertical axis for one unit a pixel of a horizontal one; 1 makes
//      squares square
//   8  leastUnits (Real64): the least units a pixel of horizontal axes; special or 0 for none
//   9  roundsUp (Bool): the units a pixel become the next 1, 2 or 5 times a power of ten
//  10  limits: a column of range tuples, or an empty one: a range is moved to lie within its limits where it
//      is not longer than they are
//  11  stopsAtZero (Bool): an end on one side of 0 is not moved past it, the other one moves instead
//  12  lower: a Real64 column, or an empty one: pixels to leave free at the range's minimum; special for none
//  13  upper: the same at its maximum
//  14  largestShare (Real64): how much of a pane may be left free, from 0 to below 1; special for 0.5
//
// An axis needs u = extent / (length - lower - upper) units a pixel, divided by the ratio when it is
// vertical. A group's units are the greatest u of its axes and the least units, rounded up where wanted; each
// of its axes becomes as long as units (times the ratio, when vertical) * length, with its own range and the
// pixels to leave free inside it: no range is cut, and the axis that needs most stays as it is. Units are
// those of the scales: days for dates, natural logarithms on a logarithmic scale.
//
// An end that the mode fixes stays, and the other one moves; an axis with two fixed ends tells the
// group its units but keeps its range where another needs more. Of limits and zero, limits come first;
// neither moves a fixed end.
//
// A column of range tuples, one a row. An axis with a missing end or without a finite length above 0 has no
// units and keeps its range; a range of one point is opened first. Columns of unequal length throw 259, a
// ratio that is not above 0 and finite, anchors or a share outside 0 to 1, and least units below 0 or
// not finite throw 2.
Value AdjustAxesForLockedScales(std::vector<Value> const& inputs);

// The units of a range for one pixel of its pane. The inputs, by position; each column has a row a range:
//
//   0  ranges: a column of range tuples
//   1  isHorizontal: a Bool column: the pane's width counts, otherwise its height
//   2  widths: of the panes in pixels, a Real64 column
//   3  heights: of the panes in pixels, a Real64 column
//   4  scale (Real64): the device's pixels for one of these (2 on a screen of double density); finite, above
//   0
//
// units = (maximum - minimum) / (pixels * scale), the ends taken on the range's scale: days for dates,
// natural logarithms on a logarithmic scale.
//
// A Real64 column, one row a range. Special of kind 1 where an end is missing or the pane has no
// finite number of pixels above 0; 0 for a range of one point. Columns of unequal length throw 259, another
// scale 2.
Value RangeUnitsPerPixel(Value const& ranges, Value const& isHorizontal, Value const& widths,
                         Value const& heights, double scale);

}  // namespace OstrelTransforms
