#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// An axis with its grid, in the coordinates of the plotting area.
struct AxisGuide {
  Group grid;
  Group axis;
};

/// Draws the axis of an evaluated position scale around a plotting area of the given size, and adds the room
/// that it takes up to the extent. Nothing for a hidden axis.
AxisGuide BuildAxis(PositionScale const& scale, Results const& results, double width, double height,
                    TextSetter const& setter, Extent& extent);

}  // namespace ostrel::charts
