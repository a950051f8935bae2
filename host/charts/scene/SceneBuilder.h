#pragma once

#include "charts/graph/ChartPlan.h"
#include "charts/guides/GuideStyle.h"
#include "charts/scene/Scene.h"

namespace ostrel::charts {

/// Puts an evaluated chart together: grid, marks, axes, legends and titles, with room for all of them.
Scene BuildScene(ChartDocument const& document, ChartPlan const& plan, Results const& results,
                 TextSetter const& setter);

}  // namespace ostrel::charts
