#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// Draws the legend of a ramp of colours below `top`: a strip that runs through the palette, or boxes of one
/// size for colours in steps, upwards or, of a legend across the chart, to the right; and beside it the
/// numbers, as many as there is room for. Gives its bottom.
double AddRampLegend(StyleScale const& scale, Results const& results, double top, Group& group,
                     Extent& extent);

}  // namespace ostrel::charts
