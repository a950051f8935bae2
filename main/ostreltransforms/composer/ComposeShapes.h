#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Lays out rows of shapes, such as the symbols of a legend or icons that count something, all in boxes of one
// size (see runtime::ShapeComposer):
//
//   firstShapes  an Int32 column, one row a list of shapes, the row of its first shape
//   counts       an Int32 column, one row a list; a special row here or in firstShapes makes an empty list
//   ids          an Int32 column, one row a shape, what the caller knows it by
//   widths       and
//   heights      Real64 columns, one row a shape, in pixels; special rows count as 0
//   width        and
//   height       of the box in pixels; when either is 0 the box is unbounded, otherwise a line ends where the
//                next shape would not fit
//   orientation  0 lines run to the right, 1 downwards, 2 upwards
//   hAlign       along a line: 0 begin, 1 middle, 2 end
//
// The result is ComposeText's with the ids as "shape_id" (Int32) in place of "text_run"; "text_style_id" is
// the row of the shape. "text_run_x" and "text_run_y" are the begin of the shape's lower edge as its line
// runs, and the anchor is at the lower end of the box around the lines. Lists are laid out on several
// threads.
//
// Throws 55 for columns of another kind and lists that are not there, 259 for columns of unequal length, 2
// for a length that is negative or not finite and for another orientation or alignment.
Value ComposeShapes(Value const& firstShapes, Value const& counts, Value const& ids, Value const& widths,
                    Value const& heights, double width, double height, int orientation, int hAlign);

}  // namespace OstrelTransforms
