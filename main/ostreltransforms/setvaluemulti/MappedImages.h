#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Where images that lie on a map are drawn when the map shows another part or gets another size: an image
// keeps to its place on the map, and its size in pixels follows. The inputs, by position:
//
//   0 to 3  left, top, right and bottom edge of each image in map units: Real64 columns, a row an image
//   4       the part of the map that is shown: a tuple of its left, top, right and bottom edge in map units
//   5       where it is shown: a tuple of the left, top, right and bottom edge of the pane in pixels
//   6       whether edges come to stand on whole pixels (Bool)
//
// Tuples hold numbers of any type; map units are any that both share (projected, so that images are not
// bent), counted in any direction. An edge e stands at
//
//   pane.left + (e - shown.left) / (shown.right - shown.left) * (pane.right - pane.left)
//
// and accordingly from top to bottom; to the nearest whole pixel, halves up, where the flag says so. Edges
// are rounded and not sizes: tiles that meet on the map meet in the picture.
//
// The result is a key map of Real64 columns with a row an image: "x" and "y", the left top corner, and
// "width" and "height", all in pixels. Edges the wrong way round are exchanged. An image with a special edge
// is special in all four with the kind of the first such edge, and with kind 1 where an edge's place is not
// finite, as that of every edge is when nothing is shown. No rows give columns without rows.
//
// Throws 219 for another number of inputs and for a tuple of less than four members, 259 for columns of
// different lengths, and 55 for inputs of another kind and special members, 178 for members that are no
// numbers.
Value UpdateToSizeForMappedImages(Value const& lefts, Value const& tops, Value const& rights,
                                  Value const& bottoms, Value const& shown, Value const& pane,
                                  bool usesWholePixels);

}  // namespace OstrelTransforms
