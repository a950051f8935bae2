#pragma once

#include <memory>

#include "maps/MapProjectorHelper.h"
#include "maps/MapScaleLevel.h"
#include "maps/MercatorProjections.h"
#include "ostreltransforms/Export.h"

namespace MapUtil {

// Pixels per unit of a map whose extents fill a view of width by height pixels: 0 when an extent or a side is
// 0, NaN when the scale of x exceeds that of y by two pixels' worth or more. A smaller scale of x is taken as
// it is.
OSTREL_API double ComputeScale(double xExtent, double yExtent, int width, int height);

// The level nearest below or at a wanted scale, with `stepsPerLevel` steps from one level to the next; the
// next step above it when its scale is at most scale / min(ratio, 0.99). `tileSize` is the size at whole
// levels; with `snap` a fractional level is moved to where the size is a whole number of pixels. Scales of 0
// or of opposite signs give the infinities and NaNs of their logarithm; sizes saturate, and are 0 for NaN.
OSTREL_API MapScaleLevel ComputeScaleLevel(double scale, double baseScale, int stepsPerLevel, int tileSize,
                                           double maximumLevel, bool snap, double ratio);

// Kind 0 is Mercator with an eccentricity, kind 1 the identity; any other kind throws the logic error
// "maps/MapUtil", 369, "false".
OSTREL_API std::unique_ptr<MapProjectorHelper> MakeProjector(int kind, double eccentricity);

}  // namespace MapUtil
