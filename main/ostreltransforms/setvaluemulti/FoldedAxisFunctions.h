#pragma once

#include "ostreltransforms/FunctorInputs.h"

// Several measures folded onto one pane, each with an axis of its own. Ranges are read and written by the
// rules of ScaleRange.
namespace OstrelTransforms {

// Widens the ranges of the axes that share a pane so that their zeros stand at one height: no range is cut,
// and the least room is wasted (see FoldedAxes::FindCommonZero). The inputs, by position:
//
//   0  ranges: a column of range tuples, one an axis
//   1  panes: an Int32 or Int64 column: axes with one number share a pane
//   2  isFolded: a Bool column: the axis takes part; others keep their ranges
//   3  reversed: a Bool column: the axis' minimum is at the pane's end
//   4  includesZero (Bool): a range that doesn't hold 0 is first widened to it; otherwise its axis takes no
//      part
//
// With zero at the fraction z of the pane, an axis that reaches b below its zero and a above it becomes as
// long as max(b / z, a / (1 - z)); z makes the product of what all axes keep of their pane greatest. For two
// axes it is, of all positions from one's zero to the other's, the one nearest to the middle.
//
// A column of range tuples, one a row. Axes with a missing end, a logarithmic scale or a temporal field have
// no zero and take no part; a range of one point is opened first. Where ends that modes fix
// leave no common height, the ranges of that pane stay as they are. Columns of unequal length throw 259.
Value ZeroAlignFoldedAxes(Value const& ranges, Value const& panes, Value const& isFolded,
                          Value const& reversed, bool includesZero);

// Gives the axes that are folded onto a pane one common range, in which the labels of all their bars
// have room. The inputs, by position:
//
//   0  axes: a table, one row an axis, with the columns "UniqueID" (Int32 or Int64), the axis' number, and
//      "BarLabelsOverflow" (tuples of two Real64): the pixels that the labels of its bars need free at the
//      ends of its own range, as calcPixelOverflow gives them; special for none
//   1  ids: an Int32 or Int64 column: the "UniqueID" of each range's axis
//   2  ranges: a column of range tuples
//   3  panes: an Int32 or Int64 column: ranges with one number share a pane
//   4  folded: an Int32 or Int64 column: the "UniqueID" of the axes that are folded together; ranges of
//      others stay as they are
//   5  length (Real64): the pane's pixels along the axes
//   6  largestShare (Real64): how much of the pane labels may be given, from 0 to below 1; special for 0.5
//   7  includesZero (Bool): the common range holds 0 (on a logarithmic scale 1)
//
// The common range goes from the least minimum to the greatest maximum of a pane's folded ranges. Each axis'
// labels stand at its own ends in it, where they may have room already; the room added is the least
// that all of them need, by the rule of calcPixelOverflow and extendRangeWithOverflow.
//
// A column of range tuples, one a row, in the rows' own modes and types. An end that any of the modes fixes
// is the common one and gets no room (of several the outermost). Ranges with a missing end get the common
// range as well; a pane without any stays as it is. An axis that the table doesn't list needs no room, one
// that it lists twice the most of both. A table without one of the columns throws 219 with its name, a
// logarithmic range folded with another or a temporal one with numbers 220, columns of unequal length 259.
Value SyncFoldedAxes(Value const& axes, Value const& ids, Value const& ranges, Value const& panes,
                     Value const& folded, double length, Value const& largestShare, bool includesZero);

}  // namespace OstrelTransforms
