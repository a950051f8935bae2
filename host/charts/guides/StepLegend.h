#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// Draws the legend of colours in steps below `top`: boxes of one height, the lowest step at the foot, and
/// beside their ends the numbers, as many as there is room for. Gives its bottom.
double AddStepLegend(StyleScale const& scale, Results const& results, double top, Group& group,
                     Extent& extent);

}  // namespace ostrel::charts
