#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// Adds the legends of an evaluated chart that all panes share, or those of one pane, on their sides of a
/// rectangle; and the room that they take up to the extent. Channels of one field share a legend.
void AddLegends(ChartPlan const& plan, std::optional<std::size_t> pane, Rect const& beside,
                Results const& results, TextSetter const& setter, Group& parent, Extent& extent);

}  // namespace ostrel::charts
