#pragma once

#include "ostreltransforms/FunctorInputs.h"

namespace OstrelTransforms {

// Where marks stand on a map of a world without an end: a map may show any stretch of longitudes, across the
// date line, wider than one world, and a mark stands once in every copy of the world that shows its place.
// The inputs, by position:
//
//   0, 1  the marks' longitudes and latitudes in degrees: Real64 columns, a row a mark
//   2, 3  the longitudes at the left and right edge of the map in degrees (Real64), any whole turns away;
//         a right edge that is not east of the left one is taken as many worlds on as are needed
//   4, 5  the latitudes at its bottom and top in degrees (Real64)
//   6, 7  the projection (Int32) and its eccentricity (Real64), as MapUtil::MakeProjector takes them
//   8, 9  the map's width and height in pixels (Real64)
//   10    how far marks reach beyond their place in pixels (Real64): those are kept as well whose place is
//         outside of the map by no more than this; below 0 it counts as 0
//
// With X and Y for the projection and W = X(180) - X(-180) for the width of a world, a longitude l whole
// turns t away from its place between -180 and 180 lies at U(l) = X(l) + t W, and the copies of a mark stand
// at
//
//   x = (X(longitude) + k W - U(left)) / (U(right) - U(left)) * width    for every whole number k
//   y = (Y(top) - Y(latitude)) / (Y(top) - Y(bottom)) * height
//
// of which the result has those with -reach <= x <= width + reach and -reach <= y <= height + reach: a key
// map of the columns "x" and "y" (Real64, pixels from the left top corner) and "row" (Int32, the row of the
// mark), by rows and from left to right, and of "WrapCount" (Int32), the number of worlds that the map shows
// a part of. Marks with a special row, or whose place is not finite, stand nowhere. No rows give columns
// without rows.
//
// Throws 219 for another number of inputs, 259 for columns of different lengths, 55 for inputs of another
// kind, and 2 for edges, sizes and a reach that are not finite, a map without width or height, one whose
// bottom is not below its top, and one that, with the reach, shows more than 64 worlds; another projection
// than 0 and 1 throws the logic error of MapUtil::MakeProjector.
Value WrapMaps(Value const& longitudes, Value const& latitudes, double left, double right, double bottom,
               double top, int projection, double eccentricity, double width, double height, double reach);

}  // namespace OstrelTransforms
