#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// Adds a group to the plot unless it is empty.
void AddGroup(Group& plot, Group group);

/// Draws all panes of an evaluated chart with their axes and headers into the plot, the first one's plotting
/// area at the origin, and adds the room that they take up to the extent.
void BuildPanes(ChartPlan const& plan, Results const& results, TextSetter const& setter, Group& plot,
                Extent& extent);

}  // namespace ostrel::charts
