#pragma once

#include "ostreltransforms/FunctorInputs.h"
#include "ostreltransforms/setvaluemulti/PixelRoom.h"
#include "ostreltransforms/setvaluemulti/ScaleRange.h"

// Marks, labels and reference lines that stick out of their pane, and the range that takes them in. Ranges
// are read and written by the rules of ScaleRange; lower is the end of the range's minimum, wherever in the
// pane that is.
namespace OstrelTransforms {

// How many pixels marks and their labels need free at the ends of a pane, so that they don't stick out of it
// once extendRangeWithOverflow has made that room. The inputs, by position:
//
//   0  values: where the marks stand, a Real64 column in the field's units (dates as day numbers)
//   1  halfSizes: half of each mark's size along the axis in pixels, a Real64 column
//   2  labelSizes: the size of each mark's label along the axis in pixels, a Real64 column; a special row has
//      no label
//   3  labelSide (Int32): the label stands before the mark, towards the pane's start (below 0), centred on it
//      (0), or after it (above 0)
//   4  gap (Real64): the pixels between a mark and its label
//   5  range: the range tuple of the axis
//   6  length (Real64): the pane's pixels along the axis
//   7  isReversed (Bool): the range's minimum is at the pane's end instead of its start
//
// A mark at the fraction t of the range takes `before` and `after` pixels to its two sides: half its size or,
// to the label's side, half its size + gap + label. The result is the least (lower, upper) for which
//   lower + t * rest >= before  and  upper + (1 - t) * rest >= after,  rest = length - lower - upper
// holds for every mark; for marks at the range's ends that is what sticks out. Where no room is
// enough it is what sticks out at present, at most the pane's length.
//
// A tuple of the Real64 numbers (lower, upper). Marks whose value is special, not finite or outside the range
// are not drawn and don't count; sizes that are special, not finite or below 0 count as 0. An end that the
// range's mode fixes gets no room. Nothing sticks out of a pane without pixels, of a range without ends, or
// without marks: (0, 0). Columns of unequal length throw 259.
Value CalcPixelOverflow(Value const& values, Value const& halfSizes, Value const& labelSizes, int labelSide,
                        double gap, Value const& range, double length, bool isReversed);

// The same for reference lines and their labels. The inputs, by position:
//
//   0  values: where the lines stand, a Real64 column in the field's units (dates as day numbers)
//   1  thicknesses: of the lines in pixels, a Real64 column
//   2  labelSizes: the size of each line's label across the line, which is along the axis, in pixels; a
//      Real64 column; a special row has no label
//   3  labelSides: an Int32 column: below 0 the label stands before its line, towards the pane's start, at 0
//      it is centred on the line, above 0 it stands after it
//   4  gap (Real64): the pixels between a line and its label
//   5  includesLines (Bool): lines outside the range are to be taken in; otherwise they are not drawn
//   6  range: the range tuple of the axis
//   7  length (Real64): the pane's pixels along the axis
//   8  isReversed (Bool): the range's minimum is at the pane's end instead of its start
//
// A line takes half its thickness to either side and, to the label's side, gap + label more; the rule is that
// of CalcPixelOverflow, with t below 0 or above 1 for a line that is to be taken in.
//
// A key map of the Real64 numbers "lower" and "upper". Special values and empty columns as above.
Value CalcReflineOverflow(Value const& values, Value const& thicknesses, Value const& labelSizes,
                          Value const& labelSides, double gap, bool includesLines, Value const& range,
                          double length, bool isReversed);

// The range that leaves pixels free at the ends of a pane. The inputs, by position:
//
//   0  range: the range tuple of the axis
//   1  lower: pixels to leave free at the range's minimum (Real64); special for none
//   2  upper: pixels to leave free at its maximum (Real64); special for none
//   3  length (Real64): the pane's pixels along the axis
//   4  largestShare (Real64): how much of the pane may be left free, from 0 to below 1; special for 0.5. Both
//      amounts are shortened alike to keep it
//
// On the range's scale, with d = maximum - minimum and rest = length - lower - upper, the minimum moves down
// by lower * d / rest and the maximum up by upper * d / rest: what was in the range then fills
// the rest of the pane, and no more is added than is needed.
//
// A range tuple. An end that the mode fixes does not move, and its pixels count as 0; amounts that are NaN or
// below 0 count as 0. The range itself where nothing is to be left free, the pane has no finite length above
// 0, or an end is missing; a range of one point is opened first. A share outside 0 to 1
// throws 2.
Value ExtendRangeWithOverflow(Value const& range, Value const& lower, Value const& upper, double length,
                              Value const& largestShare);

// Moves the ends so that the old range fills what the room leaves of the pane. The room takes less
// than the pane.
void LeaveRoom(ScaleRange& range, PixelRoom::Room const& room, double length);

// A share of a pane: a Real64 from 0 to 1, special for one half; throws 2 for any other.
double ReadLargestShare(Value const& share);

}  // namespace OstrelTransforms
