#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// An axis with its grid, in the coordinates of the plotting area.
struct AxisGuide {
  Group grid;
  Group axis;
};

/// What is drawn of an axis.
struct AxisParts {
  bool hasLabels = true;  ///< else the grid alone
  bool hasTitle = true;
  double offset = 0;  ///< pixels between the plotting area and the axis
};

/// Draws the axis of an evaluated position scale around a plotting area of the given size, and adds the room
/// that it takes up to the extent. Nothing for a hidden axis.
AxisGuide BuildAxis(PositionScale const& scale, Results const& results, double width, double height,
                    AxisParts const& parts, Extent& extent);

/// Writes a scale's title outside of everything that lies within `inner`, in the middle of an area of that
/// size.
void AddAxisTitle(PositionScale const& scale, Results const& results, double width, double height,
                  Rect const& inner, Group& axis, Extent& extent);

}  // namespace ostrel::charts
