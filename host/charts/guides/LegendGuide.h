#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"

namespace ostrel::charts {

/// The legends of an evaluated chart that all panes share, or those of one pane, one below the other from `at` on, and the room that they take up added
/// to the extent. Channels of one field share a legend.
Group BuildLegends(ChartPlan const& plan, std::optional<std::size_t> pane, Results const& results, Point at,
                   TextSetter const& setter, Extent& extent);

}  // namespace ostrel::charts
