#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Where the nodes of a treemap lie (see TreemapLayout). The inputs, by position:
//
//   0     parents: an Int32 column, a row a node, with the row of its parent; negative or special for none
//   1     sizes: a Real64 column; only those of nodes without children count, and those that are special, not
//         finite or not above 0 are 0
//   2, 3  width and height of the whole in pixels (Real64)
//   4, 5  headers and paddings: Real64 columns with the height of the strip at the top of an inner node and
//         the margin around its children in pixels, a row a level from the outermost; the last row serves
//         all deeper levels, an empty column is 0
//
// The result is a key map of columns with a row a node: Real64 "x", "y", "x1" and "y1" (left, top, right and
// bottom edge in pixels from the top left), "header_height" (pixels, 0 for leaves and where the strip would
// take more than half the height) and "size" (a leaf's own, else the sum of its leaves'), and Int32 "level"
// (0 for the outermost). No rows give columns without rows.
//
// Throws 219 for another number of inputs, 259 for columns of different lengths, and 55 for inputs of another
// kind, a parent's row at or past the end, and nodes that are their own ancestors.
Value ComputeTreemapNodesLayout(Value const& parents, Value const& sizes, double width, double height,
                                Value const& headers, Value const& paddings);

}  // namespace OstrelTransforms
