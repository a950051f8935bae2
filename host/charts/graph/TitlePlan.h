#pragma once

#include "charts/graph/ChartPlan.h"

namespace ostrel::charts {

/// Composes the titles of a chart and what its panes' headers say, once the sizes of panes are planned.
void PlanTitles(Compilation& compilation, ChartPlan& plan);

}  // namespace ostrel::charts
