#pragma once

#include "ostreltransforms/FunctorInputs.h"

// The functions of packed bubbles, over columns.
namespace OstrelTransforms {

// The centres of circles with these radii, packed around the origin, as a key map of the Real64 columns "x"
// and "y" of the input's length; see CirclePacking. A special row is a circle without a radius. Throws 55 for
// anything but a Real64 column.
Value LayoutBubbles(Value const& sizes);

// A packing in pixels: a key map of the Real64 columns "x" and "y", times "xScale" and "yScale" of `scale`
// (Real64, pixels for a unit; negative ones mirror), and "size", the diameters by the scale nearer 0. A
// special row of "x", "y" or the sizes stays special in that column. Throws 219 for a key map that does not
// have what it should, 55 for members of another kind and 259 for columns of unequal lengths.
Value PixelScaleBubbles(Value const& layout, Value const& sizes, Value const& scale);

}  // namespace OstrelTransforms
